#include "fragments/wizard_link.h"

#include <exception>
#include <stdexcept>
#include <utility>

#include "core/main_app.h"

namespace nqp::fragments {
namespace {

std::string TimeOf(const Bound& bound) {
    return bound.hours + ":" + bound.minutes + ":" + bound.seconds;
}

}  // namespace

void WizardLink::Create(const std::filesystem::path& programFolder) {
    const core::ArmedAutomationStart armed(programFolder);
    wizard_ = wizards_.Create();
}

void WizardLink::Show(const ShownFragment& fragment, bool idle) {
    const Wizard wizard = wizard_;
    wizard->init();
    Tell(*wizard, fragment);
    shown_ = fragment;
    if (!wizards_.TakeOver() || !idle) return;
    while (Fetch(*wizard))
        ;
    wizard->hide_status();
}

void WizardLink::Tell(core::Wizard& wizard, const ShownFragment& fragment) {
    wizard.update_numbers(TimeOf(fragment.bounds.begin) + " -", TimeOf(fragment.bounds.end));
    wizard.set_filepath(fragment.file);
}

void WizardLink::Update(const ShownFragment& fragment) {
    const Wizard wizard = wizard_;
    if (!wizard || fragment == shown_) return;
    try {
        Tell(*wizard, fragment);
        shown_ = fragment;
    } catch (const std::exception&) {
        LetGo(wizard);
    }
}

std::optional<JobKind> WizardLink::WaitingJob() {
    if (!KeepsOurs()) return std::nullopt;
    const Wizard wizard = wizard_;
    try {
        return Fetch(*wizard);
    } catch (const std::exception&) {
        LetGo(wizard);
        return std::nullopt;
    }
}

std::optional<JobKind> WizardLink::Fetch(core::Wizard& wizard) {
    if (wizard.Get_frwt_video()) return JobKind::Video;
    if (wizard.Get_frwt_audio()) return JobKind::Audio;
    if (wizard.Get_frwt_image()) return JobKind::Image;
    return std::nullopt;
}

std::string WizardLink::OutputPath() const {
    const Wizard wizard = wizard_;
    if (!wizard) throw std::runtime_error("The Quillon Wizard is gone.");
    return wizard->Get_frwt_OutFilePath();
}

// Progress that nobody sees is no reason to stop.
void WizardLink::SetStatus(const std::string& text) const {
    const Wizard wizard = wizard_;
    if (!wizard) return;
    try {
        wizard->set_form7_status(text);
    } catch (const std::exception&) {
        return;
    }
}

void WizardLink::ComeBackIdle() {
    if (!KeepsOurs()) return;
    const Wizard wizard = wizard_;
    try {
        wizard->init();
        wizard->hide_status();
    } catch (const std::exception&) {
        LetGo(wizard);
    }
}

// A window in the middle of a job would ask whether the job is to be cancelled.
void WizardLink::Close() {
    if (!KeepsOurs()) return;
    const Wizard wizard = std::exchange(wizard_, nullptr);
    try {
        wizard->hide_status();
    } catch (const std::exception&) {
        return;
    }
    wizards_.CloseWindow();
}

bool WizardLink::KeepsOurs() {
    if (wizard_ && !wizards_.IsOurs()) wizard_.reset();
    return wizard_ != nullptr;
}

// Not the one that was opened meanwhile.
void WizardLink::LetGo(const Wizard& wizard) {
    if (wizard_ == wizard) wizard_.reset();
}

}  // namespace nqp::fragments
