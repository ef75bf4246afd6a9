#pragma once

#include <cstdint>
#include <string>

#include "core/message_boxes.h"
#include "core/picture_placement_dialog.h"
#include "forms/form.h"
#include "forms/picture_box.h"

namespace nqp::wizard {

// Where the picture that is laid over video fragments will be: the window stands for the video, and
// a person drags the picture to its place.
class InsertBMPForm final : public forms::Form, public core::PicturePlacementDialog {
public:
    explicit InsertBMPForm(core::MessageBoxes& boxes);

    std::optional<core::PicturePosition> Place(const std::string& picturePath) override;
    void Close() override { Unload(); }

    forms::PictureBox Picture1;

    // Thousandths of the room that the picture leaves, after the last move.
    std::int32_t X() const { return position_.x; }
    std::int32_t Y() const { return position_.y; }

private:
    void Form_Activate() override;
    void Form_Resize() override;
    bool Form_KeyDown(const base::KeyEvent& key) override;
    void CloseRequested() override { Hide(); }
    void Picture1_MouseDown(const base::MouseEvent& mouse);
    void Picture1_MouseMove(const base::MouseEvent& mouse);
    void Picture1_MouseUp(const base::MouseEvent& mouse);

    void MovePicture(base::Twips left, base::Twips top);
    void ReadPosition();
    void SnapInside();

    core::MessageBoxes& boxes_;
    std::string picture_path_;
    core::PicturePosition position_;
    bool accepted_ = false;
    bool dragging_ = false;
    std::int32_t grab_x_ = 0;  // where the pointer holds the picture, twips
    std::int32_t grab_y_ = 0;
};

}  // namespace nqp::wizard
