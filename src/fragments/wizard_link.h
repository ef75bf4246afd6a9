#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "core/wizard.h"
#include "fragments/fragment_bounds.h"
#include "fragments/hand_off.h"

namespace nqp::fragments {

// What the wizard shows of the clip.
struct ShownFragment {
    FragmentBounds bounds;
    std::string file;
    bool operator==(const ShownFragment&) const = default;
};

// The player's end of the line to the wizard. While a call is on its way messages may be handled,
// and the link may be closed in there; it then ends with that call. A wizard whose process has
// ended, or that another player has taken over, is let go of silently where nothing is said of an
// error.
class WizardLink {
public:
    explicit WizardLink(core::WizardFactory& wizards) : wizards_(wizards) {}

    bool Open() const { return wizard_ != nullptr; }

    // Starts the wizard's process when none runs. Throws std::runtime_error when it cannot be
    // reached; the link is then as it was.
    void Create(const std::filesystem::path& programFolder);
    // Brings the wizard's window up. `idle` when no job is under way: what another player that used
    // the window before has left in it is forgotten. Throws std::runtime_error.
    void Show(const ShownFragment& fragment, bool idle);
    // Shows what has changed since, if anything has.
    void Update(const ShownFragment& fragment);
    // The job that a person has asked for since the last question.
    std::optional<JobKind> WaitingJob();
    // Of the job that was asked for last. Throws std::runtime_error.
    std::string OutputPath() const;
    void SetStatus(const std::string& text) const;
    // The job has ended: the window is in front again, ready for the next one.
    void ComeBackIdle();
    // The window goes too.
    void Close();

private:
    using Wizard = std::shared_ptr<core::Wizard>;

    static std::optional<JobKind> Fetch(core::Wizard& wizard);
    static void Tell(core::Wizard& wizard, const ShownFragment& fragment);
    bool KeepsOurs();
    void LetGo(const Wizard& wizard);

    core::WizardFactory& wizards_;
    Wizard wizard_;
    ShownFragment shown_;
};

}  // namespace nqp::fragments
