#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace nqp::core {

// Thousandths of the room that the picture leaves, 0 to 1000.
struct PicturePosition {
    std::int32_t x = 0;
    std::int32_t y = 0;
    bool operator==(const PicturePosition&) const = default;
};

// Where a person drags the picture that is laid over video fragments.
class PicturePlacementDialog {
public:
    // Modal, over the whole screen. Nothing when the person accepted no place.
    virtual std::optional<PicturePosition> Place(const std::string& picturePath) = 0;
    // As if nothing was accepted; nothing when it is not open.
    virtual void Close() = 0;

protected:
    ~PicturePlacementDialog() = default;
};

}  // namespace nqp::core
