#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "cutter/libav.h"
#include "cutter/overlay_picture.h"

namespace nqp::companion {

// What is made of every frame on its way from the decoder to the encoder.
struct PictureForm {
    int turns = 0;             // of a quarter, clockwise, before all else
    bool deinterlaced = true;  // frames that are marked as interlaced
    bool squarePixels = true;  // the picture gets the size at which it is to be shown
    bool keepsSize = false;    // else sides are made even
    AVPixelFormat format = AV_PIX_FMT_YUV420P;
    bool jpegColours = false;  // those of JPEG, from 0 to 255
    bool keepsRange = false;   // else all but JPEG's colours are from 16 to 235
    std::optional<core::PicturePlacement> picture = std::nullopt;
};

// Quarter turns clockwise that a stream asks for.
int TurnsOf(const AVStream& stream);

// Frames of one size and form, whatever comes in. Frames keep their order and number.
class PictureChain {
public:
    using Taker = std::function<void(AVFrame& frame)>;

    // The first frame tells the size. Throws CutError when the picture to lay over is missing.
    PictureChain(const PictureForm& form, const AVFrame& first, Taker taker);

    int Width() const { return width_; }
    int Height() const { return height_; }
    // Of one pixel; 1 with square pixels.
    AVRational Aspect() const { return aspect_; }

    void Add(const AVFrame& frame);
    void Finish();

private:
    // What a graph is made for.
    struct Input {
        int width = 0;
        int height = 0;
        int format = -1;
        AVRational aspect{1, 1};
        AVColorSpace colours = AVCOL_SPC_UNSPECIFIED;
        AVColorRange range = AVCOL_RANGE_UNSPECIFIED;
        bool interlaced = false;
        bool operator==(const Input& other) const;
    };

    static Input InputOf(const AVFrame& frame);
    void ChooseSize(const Input& input);
    void Build(const Input& input);
    std::string Steps(const Input& input) const;
    std::string ScaleStep(const Input& input) const;
    std::string OverlayStep(const Input& input) const;
    std::string WantedMatrix(const Input& input) const;
    bool WantsWholeRange(const Input& input) const;
    void TakeAll();

    PictureForm form_;
    Taker taker_;
    int width_ = 0;
    int height_ = 0;
    AVRational aspect_{1, 1};
    std::optional<OverlayPicture> overlay_;
    Input input_;
    bool seen_interlaced_ = false;
    std::int64_t count_ = 0;
    Libav<AVFilterGraph> graph_;
    AVFilterContext* in_ = nullptr;  // owned by the graph
    AVFilterContext* out_ = nullptr;
    Libav<AVFrame> filtered_ = NewFrame();
};

}  // namespace nqp::companion
