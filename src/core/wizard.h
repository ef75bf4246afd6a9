#pragma once

#include <memory>
#include <string>

#include "base/input.h"

namespace nqp::core {

// By this name the system starts the program as the server of `Wizard`.
inline constexpr char kWizardProgId[] = "NQP.CWizard";

// The program's own automation class, method by method in the order of its interface. It has no
// state of its own: all of it is in the one wizard window of the process that serves it. To a
// client in another process every call throws std::runtime_error once that process is gone.
class Wizard {
public:
    virtual ~Wizard() = default;

    virtual void init() = 0;  // the wizard window is shown, above all others
    virtual void hide_status() = 0;
    virtual void set_filepath(const std::string& fpath) = 0;
    virtual void set_form7_status(const std::string& stat) = 0;
    virtual void update_numbers(const std::string& str_n1, const std::string& str_n2) = 0;
    // Each of the three is true once for each job that a person asks for.
    virtual bool Get_frwt_video() = 0;
    virtual bool Get_frwt_audio() = 0;
    virtual bool Get_frwt_image() = 0;
    virtual bool Get_frwt_unload() = 0;  // always false
    // As the save dialog left it: the path and the NUL characters behind it.
    virtual std::string Get_frwt_OutFilePath() = 0;
};

// The client's side.
class WizardFactory {
public:
    // A new one, which lives in a process of its own without other windows. Throws
    // std::runtime_error with a sentence for the user.
    virtual std::unique_ptr<Wizard> Create() = 0;
    // The wizard window on the screen, whichever process shows it; null when there is none.
    virtual base::NativeWindow Window() const = 0;
    // As if its user closed that window, in which no job is under way; does not wait for it.
    virtual void CloseWindow() = 0;
    // Several players may reach the same window; only the last one that takes it over serves it.
    // True when it was another one's before.
    virtual bool TakeOver() = 0;
    // Also when the window is closed.
    virtual bool IsOurs() const = 0;

protected:
    ~WizardFactory() = default;
};

}  // namespace nqp::core
