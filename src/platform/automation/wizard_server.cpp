#include "platform/automation/wizard_server.h"

#include <exception>
#include <optional>
#include <utility>

#include "forms/run_time_error.h"
#include "forms/win32/winapi/com.h"
#include "platform/automation/dual_object.h"
#include "platform/automation/variant.h"
#include "platform/automation/wizard_interface.h"

namespace nqp::platform {
namespace {

using Clock = std::chrono::steady_clock;

// A class object that is on offer to one client.
class Offer {
public:
    explicit Offer(IClassFactory& factory) {
        const HRESULT result = CoRegisterClassObject(kWizardClassId, &factory, CLSCTX_LOCAL_SERVER,
                                                     REGCLS_SINGLEUSE, &cookie_);
        if (FAILED(result)) {
            throw forms::RunTimeError("The Quillon Wizard cannot be reached by other programs.");
        }
    }
    ~Offer() { CoRevokeClassObject(cookie_); }
    Offer(const Offer&) = delete;
    Offer& operator=(const Offer&) = delete;

private:
    DWORD cookie_ = 0;
};

}  // namespace

// What the server and all of its COM objects share; the objects may outlive the server.
class WizardServer::Served {
public:
    Served(core::Wizard& wizard, std::function<void()> lastReleased)
        : wizard_(&wizard),
          lastReleased_(std::move(lastReleased)),
          type_(TypeInfoInProgram(__uuidof(IWizard))) {}

    static void OfferClass(const std::shared_ptr<Served>& served);

    void Stop() {
        wizard_ = nullptr;
        lastReleased_ = nullptr;
        offer_.reset();
    }

    core::Wizard* Wizard() const { return wizard_; }
    const winapi::ComPtr<ITypeInfo>& Type() const { return type_; }
    int Held() const { return held_; }
    Clock::time_point LastCall() const { return lastCall_; }
    void NoteCall() { lastCall_ = Clock::now(); }

    void Hold() { ++held_; }
    void LetGo() noexcept {
        if (--held_ != 0) return;
        // The callback may end the server, and itself with it.
        const auto released = lastReleased_;
        forms::Guarded(forms::Origin::Program, [&] {
            if (released) released();
        });
    }

private:
    core::Wizard* wizard_;
    std::function<void()> lastReleased_;
    winapi::ComPtr<ITypeInfo> type_;
    std::unique_ptr<Offer> offer_;
    int held_ = 0;
    Clock::time_point lastCall_ = Clock::now();
};

class WizardServer::Object final : public DualObject<IWizard> {
public:
    explicit Object(std::shared_ptr<Served> served)
        : DualObject(served->Type()), served_(std::move(served)) {
        served_->Hold();
    }
    ~Object() override { served_->LetGo(); }

    HRESULT STDMETHODCALLTYPE init() override {
        return Answer([](core::Wizard& wizard) { wizard.init(); });
    }
    HRESULT STDMETHODCALLTYPE hide_status() override {
        return Answer([](core::Wizard& wizard) { wizard.hide_status(); });
    }
    HRESULT STDMETHODCALLTYPE set_filepath(BSTR fpath) override {
        return Answer([&](core::Wizard& wizard) { wizard.set_filepath(TextOf(fpath)); });
    }
    HRESULT STDMETHODCALLTYPE set_form7_status(BSTR stat) override {
        return Answer([&](core::Wizard& wizard) { wizard.set_form7_status(TextOf(stat)); });
    }
    HRESULT STDMETHODCALLTYPE update_numbers(BSTR str_n1, BSTR str_n2) override {
        return Answer(
            [&](core::Wizard& wizard) { wizard.update_numbers(TextOf(str_n1), TextOf(str_n2)); });
    }
    HRESULT STDMETHODCALLTYPE Get_frwt_video(VARIANT_BOOL* result) override {
        return AnswerFlag(result, &core::Wizard::Get_frwt_video);
    }
    HRESULT STDMETHODCALLTYPE Get_frwt_audio(VARIANT_BOOL* result) override {
        return AnswerFlag(result, &core::Wizard::Get_frwt_audio);
    }
    HRESULT STDMETHODCALLTYPE Get_frwt_image(VARIANT_BOOL* result) override {
        return AnswerFlag(result, &core::Wizard::Get_frwt_image);
    }
    HRESULT STDMETHODCALLTYPE Get_frwt_unload(VARIANT_BOOL* result) override {
        return AnswerFlag(result, &core::Wizard::Get_frwt_unload);
    }
    HRESULT STDMETHODCALLTYPE Get_frwt_OutFilePath(BSTR* result) override {
        if (result == nullptr) return E_POINTER;
        *result = nullptr;
        const HRESULT answer =
            Answer([&](core::Wizard& wizard) { *result = NewText(wizard.Get_frwt_OutFilePath()); });
        return SUCCEEDED(answer) && *result == nullptr ? E_OUTOFMEMORY : answer;
    }

private:
    template <class Method>
    HRESULT Answer(Method&& method) noexcept {
        core::Wizard* const wizard = served_->Wizard();
        if (wizard == nullptr) return CO_E_OBJNOTCONNECTED;
        served_->NoteCall();
        std::optional<std::string> failure;
        try {
            method(*wizard);
        } catch (const std::exception& error) {
            failure = error.what();
        } catch (...) {
            failure = "The Quillon Wizard could not do it.";
        }
        // A method may have run a message loop of its own; the call ends only now.
        served_->NoteCall();
        if (!failure) return S_OK;
        SetErrorText(__uuidof(IWizard), core::kWizardProgId, *failure);
        return kMethodFailed;
    }

    HRESULT AnswerFlag(VARIANT_BOOL* result, bool (core::Wizard::*flag)()) noexcept {
        if (result == nullptr) return E_POINTER;
        *result = VARIANT_FALSE;
        return Answer([&](core::Wizard& wizard) {
            if ((wizard.*flag)()) *result = VARIANT_TRUE;
        });
    }

    std::shared_ptr<Served> served_;
};

class WizardServer::ClassObject final : public winapi::ComObject<IClassFactory> {
public:
    explicit ClassObject(std::shared_ptr<Served> served) : served_(std::move(served)) {}

    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID id, void** object) override {
        if (object == nullptr) return E_POINTER;
        *object = nullptr;
        if (outer != nullptr) return CLASS_E_NOAGGREGATION;
        if (served_->Wizard() == nullptr) return CO_E_SERVER_STOPPING;
        served_->NoteCall();
        OfferNext();
        return winapi::MakeCom<Object>(served_)->QueryInterface(id, object);
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override {
        if (lock) {
            served_->Hold();
        } else {
            served_->LetGo();
        }
        return S_OK;
    }

private:
    // This one is used up, by the client that is calling.
    void OfferNext() noexcept {
        if (std::exchange(taken_, true)) return;
        forms::Guarded(forms::Origin::Program, [&] { Served::OfferClass(served_); });
    }

    std::shared_ptr<Served> served_;
    bool taken_ = false;
};

void WizardServer::Served::OfferClass(const std::shared_ptr<Served>& served) {
    const auto factory = winapi::MakeCom<ClassObject>(served);
    // Not every system has room for two of one class.
    served->offer_.reset();
    served->offer_ = std::make_unique<Offer>(*factory.Get());
}

WizardServer::WizardServer(core::Wizard& wizard, std::function<void()> lastReleased)
    : served_(std::make_shared<Served>(wizard, std::move(lastReleased))) {
    Served::OfferClass(served_);
}

WizardServer::~WizardServer() {
    served_->Stop();
}

int WizardServer::Objects() const {
    return served_->Held();
}

std::chrono::milliseconds WizardServer::SinceLastCall() const {
    return std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() -
                                                                 served_->LastCall());
}

}  // namespace nqp::platform
