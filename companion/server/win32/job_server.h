#pragma once

#include <memory>

#include "server/job_work.h"
#include "server/win32/window_thread.h"

namespace nqp::companion {

// Serves one job's object to one client under core::kCompanionProgId. Made, used and destroyed on
// the window thread, which has entered an apartment of its own.
class JobServer {
public:
    // Throws forms::RunTimeError when the class cannot be offered.
    JobServer(JobWork& work, WindowThread& windows);
    // An object that the client still holds fails from here on.
    ~JobServer();
    JobServer(const JobServer&) = delete;
    JobServer& operator=(const JobServer&) = delete;

    // Runs the message loop until the client has no further use for the process. What went wrong
    // with a job beside its client is shown in a box before.
    void Serve();

private:
    class Served;
    class Object;
    class ClassObject;

    std::shared_ptr<Served> served_;
    DWORD offer_ = 0;
};

}  // namespace nqp::companion
