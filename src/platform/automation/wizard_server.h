#pragma once

#include <chrono>
#include <functional>
#include <memory>

#include "core/wizard.h"

namespace nqp::platform {

// Serves one wizard to other processes under core::kWizardProgId. Made, used and destroyed on the
// window thread, which has entered an apartment of its own and runs a message loop: the wizard's
// methods are called in there. What a method throws becomes a failed call with the error's text.
//
// All clients reach this one process. Each of them uses up the class object that is on offer, and
// the next one is offered at once; so a server that is killed leaves no more than one behind.
class WizardServer {
public:
    // `lastReleased` is called when the last object that clients held is gone. Throws
    // forms::RunTimeError when the class cannot be offered. The wizard outlives the server.
    WizardServer(core::Wizard& wizard, std::function<void()> lastReleased);
    // Objects that clients still hold fail from here on.
    ~WizardServer();
    WizardServer(const WizardServer&) = delete;
    WizardServer& operator=(const WizardServer&) = delete;

    // How many objects clients hold, and locks on the server. The system may never take back those
    // of a client that was killed.
    int Objects() const;
    // Since a client created an object or called one; before the first, since the server was made.
    std::chrono::milliseconds SinceLastCall() const;

private:
    class Served;
    class Object;
    class ClassObject;

    std::shared_ptr<Served> served_;
};

}  // namespace nqp::platform
