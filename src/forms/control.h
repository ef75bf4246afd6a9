#pragma once

#include <memory>
#include <string>

#include "base/event.h"
#include "forms/backend.h"

namespace nqp::forms {

class Form;

// A control of a form. It exists as long as its form object; what is on the screen exists from the
// form's load to its unload. Coordinates are twips inside the form's client area.
class Control : private ControlEvents {
public:
    Control(const Control&) = delete;
    Control& operator=(const Control&) = delete;

    base::Event<> Click;
    base::Event<> DblClick;
    base::Event<const base::MouseEvent&> MouseDown;
    base::Event<const base::MouseEvent&> MouseMove;
    base::Event<const base::MouseEvent&> MouseUp;
    base::Event<> MouseLeave;
    // The control has the focus. A button raises Click for Enter and Space instead.
    base::Event<const base::KeyEvent&> KeyDown;
    base::Event<> LostFocus;
    // Full paths of dropped files; only a control that was told to TakeFiles gets them.
    base::Event<const std::vector<std::string>&> OLEDragDrop;
    // The program gave the control another size.
    base::Event<> Resize;

    Form& Parent() const { return form_; }
    const ControlState& State() const { return state_; }
    const std::string& Name() const { return state_.name; }
    int Id() const { return state_.id; }

    base::Twips Left() const { return state_.bounds.left; }
    base::Twips Top() const { return state_.bounds.top; }
    base::Twips Width() const { return state_.bounds.width; }
    base::Twips Height() const { return state_.bounds.height; }
    void SetLeft(base::Twips left);
    void SetTop(base::Twips top);
    void Move(const base::Rect& bounds);

    // What lies on a frame that is hidden is not visible.
    bool Visible() const { return state_.visible; }
    void SetVisible(bool visible);
    bool Enabled() const { return state_.enabled; }
    void SetEnabled(bool enabled);
    const std::string& ToolTipText() const { return state_.toolTip; }
    void SetToolTipText(const std::string& text);
    void SetColors(Color fore, Color back);
    Color ForeColor() const { return state_.foreColor; }
    void SetForeColor(Color fore) { SetColors(fore, state_.backColor); }
    Color BackColor() const { return state_.backColor; }
    void SetBackColor(Color back) { SetColors(state_.foreColor, back); }
    // For assistive tools.
    void SetAccessibleName(const std::string& name);
    void SetAccessibleValue(const std::string& value);
    void SetFocus();
    bool HasFocus() const;
    // Whether Tab stops here.
    void SetTabStop(bool stop);
    // To be called before the form is loaded.
    void TakeFiles() { state_.takesFiles = true; }

protected:
    Control(Form& form, ControlKind kind, const std::string& name, int id,
            const base::Rect& bounds);
    ~Control();

    // Shows a change of the state; the setters of the kinds call it.
    void Update();
    // Null while the form is not loaded.
    ControlPeer* PeerOnScreen() const { return peer_.get(); }

    // Whether another control is in sight depends on this one from now on.
    void PutOnto(Control& control);
    void ShowWithThis(Control& control) { control.ShowOrHide(); }

    ControlState state_;

private:
    friend class Form;

    void ShowOrHide();
    virtual void VisibilityChanged() {}

    void OnClick() noexcept override;
    void OnDoubleClick() noexcept override;
    void OnMouseDown(const base::MouseEvent& mouse) noexcept override;
    void OnMouseMove(const base::MouseEvent& mouse) noexcept override;
    void OnMouseUp(const base::MouseEvent& mouse) noexcept override;
    void OnMouseLeave() noexcept override;
    void OnKeyDown(const base::KeyEvent& key) noexcept override;
    void OnTextTyped(const std::string& text) noexcept override;
    void OnValueChanged(int value) noexcept override;
    void OnFocusLost() noexcept override;
    void OnFilesDropped(const std::vector<std::string>& paths) noexcept override;

    // The kinds that a person changes raise their Change event here.
    virtual void RaiseChange() {}

    Form& form_;
    const Control* frame_ = nullptr;  // null: directly on the form
    bool shown_ = true;               // when its frame is
    std::unique_ptr<ControlPeer> peer_;
};

}  // namespace nqp::forms
