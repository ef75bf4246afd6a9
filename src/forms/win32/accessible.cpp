#include "forms/win32/accessible.h"

#include <oleacc.h>

#include <string>

#include "forms/win32/control_window.h"
#include "forms/win32/winapi/com.h"
#include "forms/win32/winapi/text.h"

namespace nqp::forms::win32 {
namespace {

constexpr HRESULT kWindowIsGone = static_cast<HRESULT>(0x800401FD);  // CO_E_OBJNOTCONNECTED

HRESULT Answer(const std::string& text, BSTR* out) {
    if (out == nullptr) return E_INVALIDARG;
    *out = text.empty() ? nullptr : SysAllocString(winapi::Utf16(text).c_str());
    return text.empty() ? S_FALSE : S_OK;
}

bool IsSelf(const VARIANT& child) {
    return child.vt == VT_I4 && child.lVal == CHILDID_SELF;
}

LONG PlatformRole(Role role) {
    switch (role) {
        case Role::Button:
            return ROLE_SYSTEM_PUSHBUTTON;
        case Role::Slider:
            return ROLE_SYSTEM_SLIDER;
        case Role::PageHeader:
            return ROLE_SYSTEM_PAGETAB;
        case Role::Grip:
            return ROLE_SYSTEM_GRIP;
        default:
            return ROLE_SYSTEM_GRAPHIC;
    }
}

// May outlive its control: every call looks the control up by its window.
class AccessibleControl final : public winapi::ComObject<IAccessible> {
public:
    explicit AccessibleControl(HWND window) : window_(window) {
        CreateStdAccessibleObject(window, OBJID_CLIENT, __uuidof(IAccessible), standard_.PutVoid());
    }
    bool Usable() const { return static_cast<bool>(standard_); }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
        const bool dispatch = object != nullptr && IsEqualIID(id, __uuidof(IDispatch));
        if (!dispatch) return ComObject::QueryInterface(id, object);
        *object = static_cast<IDispatch*>(this);
        AddRef();
        return S_OK;
    }

    // ---- the control's own ----

    HRESULT STDMETHODCALLTYPE get_accName(VARIANT child, BSTR* name) override {
        const ControlWindow* control = Control();
        if (control == nullptr) return kWindowIsGone;
        const ListLines* lines = control->State().lines;
        const bool line = lines != nullptr && child.vt == VT_I4 && child.lVal > 0;
        if (line && child.lVal <= lines->Count()) {
            return Answer(std::string(lines->Line(child.lVal - 1)), name);
        }
        if (!IsSelf(child)) return standard_->get_accName(child, name);
        return Answer(control->State().accessibleName, name);
    }
    HRESULT STDMETHODCALLTYPE get_accRole(VARIANT child, VARIANT* role) override {
        const ControlWindow* control = Control();
        if (control == nullptr) return kWindowIsGone;
        if (role == nullptr) return E_INVALIDARG;
        if (!IsPicture() || !IsSelf(child)) return standard_->get_accRole(child, role);
        role->vt = VT_I4;
        role->lVal = PlatformRole(control->State().role);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE get_accState(VARIANT child, VARIANT* state) override {
        const ControlWindow* control = Control();
        if (control == nullptr) return kWindowIsGone;
        const HRESULT result = standard_->get_accState(child, state);
        if (FAILED(result) || !IsPicture() || state->vt != VT_I4) return result;
        const Role role = control->State().role;
        if (role != Role::Image && role != Role::Grip) state->lVal |= STATE_SYSTEM_FOCUSABLE;
        const bool chosen = role == Role::PageHeader && control->State().value != 0;
        if (role == Role::PageHeader) state->lVal |= STATE_SYSTEM_SELECTABLE;
        if (chosen) state->lVal |= STATE_SYSTEM_SELECTED;
        if (control->HasFocus()) state->lVal |= STATE_SYSTEM_FOCUSED;
        return result;
    }
    HRESULT STDMETHODCALLTYPE get_accValue(VARIANT child, BSTR* value) override {
        const ControlWindow* control = Control();
        if (control == nullptr) return kWindowIsGone;
        if (!IsPicture()) return standard_->get_accValue(child, value);
        return Answer(control->State().accessibleValue, value);
    }
    HRESULT STDMETHODCALLTYPE get_accDefaultAction(VARIANT child, BSTR* action) override {
        if (!IsButton()) return standard_->get_accDefaultAction(child, action);
        return Answer("Press", action);
    }
    HRESULT STDMETHODCALLTYPE accDoDefaultAction(VARIANT child) override {
        if (!IsButton()) return standard_->accDoDefaultAction(child);
        // The tool waits for this call, and a press may open a dialog.
        PostMessageW(window_, kPress, 0, 0);
        return S_OK;
    }

    // ---- the platform's ----

    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
        return standard_->GetTypeInfoCount(count);
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) override {
        return standard_->GetTypeInfo(index, locale, info);
    }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID id, LPOLESTR* names, UINT count, LCID locale,
                                            DISPID* ids) override {
        return standard_->GetIDsOfNames(id, names, count, locale, ids);
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID member, REFIID id, LCID locale, WORD flags,
                                     DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* error,
                                     UINT* argument) override {
        return standard_->Invoke(member, id, locale, flags, parameters, result, error, argument);
    }
    HRESULT STDMETHODCALLTYPE get_accParent(IDispatch** parent) override {
        return standard_->get_accParent(parent);
    }
    HRESULT STDMETHODCALLTYPE get_accChildCount(LONG* count) override {
        return standard_->get_accChildCount(count);
    }
    HRESULT STDMETHODCALLTYPE get_accChild(VARIANT child, IDispatch** object) override {
        return standard_->get_accChild(child, object);
    }
    HRESULT STDMETHODCALLTYPE get_accDescription(VARIANT child, BSTR* text) override {
        return standard_->get_accDescription(child, text);
    }
    HRESULT STDMETHODCALLTYPE get_accHelp(VARIANT child, BSTR* text) override {
        return standard_->get_accHelp(child, text);
    }
    HRESULT STDMETHODCALLTYPE get_accHelpTopic(BSTR* file, VARIANT child, LONG* topic) override {
        return standard_->get_accHelpTopic(file, child, topic);
    }
    HRESULT STDMETHODCALLTYPE get_accKeyboardShortcut(VARIANT child, BSTR* text) override {
        return standard_->get_accKeyboardShortcut(child, text);
    }
    HRESULT STDMETHODCALLTYPE get_accFocus(VARIANT* focus) override {
        return standard_->get_accFocus(focus);
    }
    HRESULT STDMETHODCALLTYPE get_accSelection(VARIANT* children) override {
        return standard_->get_accSelection(children);
    }
    HRESULT STDMETHODCALLTYPE accSelect(LONG flags, VARIANT child) override {
        return standard_->accSelect(flags, child);
    }
    HRESULT STDMETHODCALLTYPE accLocation(LONG* left, LONG* top, LONG* width, LONG* height,
                                          VARIANT child) override {
        return standard_->accLocation(left, top, width, height, child);
    }
    HRESULT STDMETHODCALLTYPE accNavigate(LONG direction, VARIANT from, VARIANT* to) override {
        return standard_->accNavigate(direction, from, to);
    }
    HRESULT STDMETHODCALLTYPE accHitTest(LONG x, LONG y, VARIANT* child) override {
        return standard_->accHitTest(x, y, child);
    }
    HRESULT STDMETHODCALLTYPE put_accName(VARIANT child, BSTR name) override {
        return standard_->put_accName(child, name);
    }
    HRESULT STDMETHODCALLTYPE put_accValue(VARIANT child, BSTR value) override {
        return standard_->put_accValue(child, value);
    }

private:
    ControlWindow* Control() const { return ControlWindow::Of(window_); }
    bool IsPicture() const {
        const ControlWindow* control = Control();
        return control != nullptr && (control->State().kind == ControlKind::PictureBox ||
                                      control->State().role == Role::PageHeader);
    }
    bool IsButton() const {
        return IsPicture() && (Control()->State().role == Role::Button ||
                               Control()->State().role == Role::PageHeader);
    }

    HWND window_;
    winapi::ComPtr<IAccessible> standard_;
};

}  // namespace

LRESULT AccessibleObjectOf(HWND control, WPARAM request) {
    const auto object = winapi::MakeCom<AccessibleControl>(control);
    if (!object->Usable()) return 0;
    return LresultFromObject(__uuidof(IAccessible), request, object.Get());
}

}  // namespace nqp::forms::win32
