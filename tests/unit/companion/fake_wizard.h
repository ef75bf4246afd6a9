#pragma once

#include <condition_variable>
#include <mutex>
#include <string>
#include <vector>

#include "server/progress_reporter.h"

namespace nqp::companion {

// What a test sees of the wizard that a reporter found; it outlives the contact.
class FakeWizard {
public:
    WizardFinder Finder() {
        return [this]() -> std::unique_ptr<WizardContact> {
            const std::lock_guard lock(mutex_);
            ++searches_;
            if (!there) return nullptr;
            return std::make_unique<Contact>(*this);
        };
    }

    // Before a reporter begins.
    bool there = true;
    std::string target;
    std::size_t goesAfter = 1000000;  // so many texts

    std::vector<std::string> Texts() {
        const std::lock_guard lock(mutex_);
        return texts_;
    }
    int Searches() {
        const std::lock_guard lock(mutex_);
        return searches_;
    }
    bool WaitForTexts(std::size_t count) {
        std::unique_lock lock(mutex_);
        return changed_.wait_for(lock, kDeadline, [&] { return texts_.size() >= count; });
    }
    void Hang() {
        const std::lock_guard lock(mutex_);
        hangs_ = true;
    }
    // Returns when what hung has gone.
    void GoOn() {
        std::unique_lock lock(mutex_);
        hangs_ = false;
        changed_.notify_all();
        changed_.wait_for(lock, kDeadline, [this] { return contacts_ == 0; });
    }

private:
    static constexpr std::chrono::seconds kDeadline{10};

    class Contact final : public WizardContact {
    public:
        explicit Contact(FakeWizard& wizard) : wizard_(wizard) { ++wizard_.contacts_; }
        ~Contact() override {
            const std::lock_guard lock(wizard_.mutex_);
            --wizard_.contacts_;
            wizard_.changed_.notify_all();
        }
        bool ShowStatus(const std::string& text) override {
            std::unique_lock lock(wizard_.mutex_);
            wizard_.changed_.wait(lock, [this] { return !wizard_.hangs_; });
            wizard_.texts_.push_back(text);
            wizard_.changed_.notify_all();
            return wizard_.texts_.size() < wizard_.goesAfter;
        }
        std::optional<std::string> OutputPath() override {
            std::unique_lock lock(wizard_.mutex_);
            wizard_.changed_.wait(lock, [this] { return !wizard_.hangs_; });
            return wizard_.target;
        }

    private:
        FakeWizard& wizard_;
    };

    std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<std::string> texts_;
    int searches_ = 0;
    int contacts_ = 0;
    bool hangs_ = false;
};

}  // namespace nqp::companion
