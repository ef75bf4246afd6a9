#include "cutter/picture_chain.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace nqp::companion {
namespace {

constexpr int kQuarter = 90;  // degrees
constexpr int kQuarters = 4;
constexpr int kShortestSide = 2;
// Pictures of this height and above count as high definition, with its colours, where nothing is
// said about them.
constexpr int kHighDefinition = 720;
// The frames have numbers instead of times.
constexpr char kTimeBase[] = "1/25";

AVRational AspectOf(const AVFrame& frame) {
    const AVRational aspect = frame.sample_aspect_ratio;
    const bool plausible =
        aspect.num > 0 && aspect.den > 0 && av_q2d(aspect) > 0.1 && av_q2d(aspect) < 10;
    return plausible ? aspect : AVRational{1, 1};
}

int Even(double side) {
    return std::max(kShortestSide, 2 * static_cast<int>(std::lround(side / 2)));
}

AVColorSpace ColoursOf(const AVFrame& frame) {
    const bool told = frame.colorspace != AVCOL_SPC_UNSPECIFIED &&
                      frame.colorspace != AVCOL_SPC_RESERVED && frame.colorspace != AVCOL_SPC_RGB;
    if (told) return frame.colorspace;
    return frame.height >= kHighDefinition ? AVCOL_SPC_BT709 : AVCOL_SPC_SMPTE170M;
}

std::string MatrixName(AVColorSpace colours) {
    switch (colours) {
        case AVCOL_SPC_BT709:
            return "bt709";
        case AVCOL_SPC_SMPTE240M:
            return "smpte240m";
        case AVCOL_SPC_FCC:
            return "fcc";
        case AVCOL_SPC_BT2020_NCL:
        case AVCOL_SPC_BT2020_CL:
            return "bt2020";
        default:
            return "bt601";
    }
}

bool IsWholeRange(AVColorRange range, int format) {
    return range == AVCOL_RANGE_JPEG || format == AV_PIX_FMT_YUVJ420P ||
           format == AV_PIX_FMT_YUVJ422P || format == AV_PIX_FMT_YUVJ444P;
}

bool IsRgb(int format) {
    const AVPixFmtDescriptor* const facts = av_pix_fmt_desc_get(static_cast<AVPixelFormat>(format));
    return facts != nullptr && (facts->flags & AV_PIX_FMT_FLAG_RGB) != 0;
}

// In what forms a picture is laid over frames: as the filters name them.
struct PlacedFormat {
    const char* frame;
    const char* picture;
};

PlacedFormat FormatsFor(AVPixelFormat format) {
    if (IsRgb(format)) return {"gbrp", "gbrap"};
    const AVPixFmtDescriptor& facts = *av_pix_fmt_desc_get(format);
    constexpr int kPlainBits = 8;
    const bool fine = facts.comp[0].depth > kPlainBits;
    if (facts.log2_chroma_w == 0) return {"yuv444", "yuva444p"};
    if (facts.log2_chroma_h == 0) {
        return fine ? PlacedFormat{"yuv422p10", "yuva422p10"} : PlacedFormat{"yuv422", "yuva422p"};
    }
    return fine ? PlacedFormat{"yuv420p10", "yuva420p10"} : PlacedFormat{"yuv420", "yuva420p"};
}

std::string Number(std::int64_t number) {
    return std::to_string(number);
}

// As the filters take a picture: colours that are not multiplied by their alpha.
Libav<AVFrame> FrameOf(const base::Bitmap& bitmap) {
    auto frame = NewFrame();
    frame->format = AV_PIX_FMT_BGRA;
    frame->width = bitmap.Width();
    frame->height = bitmap.Height();
    Checked(av_frame_get_buffer(frame.get(), 0), "picture buffer");
    constexpr unsigned kMost = 255;
    for (int y = 0; y < bitmap.Height(); ++y) {
        std::uint8_t* to = frame->data[0] + static_cast<std::ptrdiff_t>(y) * frame->linesize[0];
        for (const base::Pixel pixel : bitmap.Row(y)) {
            const unsigned alpha = base::AlphaOf(pixel);
            for (const unsigned shift : {0U, 8U, 16U}) {
                const unsigned colour = pixel >> shift & kMost;
                const unsigned full = alpha == 0 ? 0 : (colour * kMost + alpha / 2) / alpha;
                *to++ = static_cast<std::uint8_t>(std::min(full, kMost));
            }
            *to++ = static_cast<std::uint8_t>(alpha);
        }
    }
    return frame;
}

AVFilterContext* MakeSource(AVFilterGraph& graph, const char* name, const std::string& options) {
    AVFilterContext* made = nullptr;
    Checked(avfilter_graph_create_filter(&made, avfilter_get_by_name("buffer"), name,
                                         options.c_str(), nullptr, &graph),
            "filter input");
    return made;
}

std::string SourceOptions(int width, int height, int format, AVRational aspect) {
    std::string options = "video_size=";
    options.append(Number(width)).append("x").append(Number(height));
    options.append(":pix_fmt=").append(Number(format)).append(":time_base=").append(kTimeBase);
    options.append(":pixel_aspect=").append(Number(aspect.num)).append("/");
    return options.append(Number(aspect.den));
}

struct InOut {
    InOut(const char* name, AVFilterContext* context, InOut* following) {
        pointer = avfilter_inout_alloc();
        if (pointer == nullptr) throw std::bad_alloc();
        pointer->name = av_strdup(name);
        pointer->filter_ctx = context;
        if (following != nullptr) pointer->next = std::exchange(following->pointer, nullptr);
    }
    ~InOut() { avfilter_inout_free(&pointer); }
    InOut(const InOut&) = delete;
    InOut& operator=(const InOut&) = delete;

    AVFilterInOut* pointer = nullptr;
};

}  // namespace

int TurnsOf(const AVStream& stream) {
    const std::uint8_t* const matrix =
        av_stream_get_side_data(&stream, AV_PKT_DATA_DISPLAYMATRIX, nullptr);
    if (matrix == nullptr) return 0;
    // Counter-clockwise, and no number for a matrix that is no rotation.
    const double degrees = av_display_rotation_get(reinterpret_cast<const std::int32_t*>(matrix));
    if (!std::isfinite(degrees)) return 0;
    const auto turns = static_cast<int>(std::lround(-degrees / kQuarter));
    return (turns % kQuarters + kQuarters) % kQuarters;
}

bool PictureChain::Input::operator==(const Input& other) const {
    return width == other.width && height == other.height && format == other.format &&
           av_cmp_q(aspect, other.aspect) == 0 && colours == other.colours &&
           range == other.range && interlaced == other.interlaced;
}

PictureChain::Input PictureChain::InputOf(const AVFrame& frame) {
    return {.width = frame.width,
            .height = frame.height,
            .format = frame.format,
            .aspect = AspectOf(frame),
            .colours = ColoursOf(frame),
            .range = frame.color_range,
            .interlaced = frame.interlaced_frame != 0};
}

PictureChain::PictureChain(const PictureForm& form, const AVFrame& first, Taker taker)
    : form_(form), taker_(std::move(taker)) {
    input_ = InputOf(first);
    ChooseSize(input_);
    if (form_.picture) {
        overlay_ = AtEvenPlace(PlacePicture(*form_.picture, width_, height_));
    }
}

void PictureChain::ChooseSize(const Input& input) {
    double width = input.width;
    double height = input.height;
    aspect_ = input.aspect;
    if (form_.turns % 2 != 0) {
        std::swap(width, height);
        std::swap(aspect_.num, aspect_.den);
    }
    const bool stretched = aspect_.num != aspect_.den;
    if (stretched && form_.squarePixels) {
        width *= av_q2d(aspect_);
        aspect_ = {1, 1};
    }
    const bool exact = form_.keepsSize;
    width_ = exact ? std::max(1, static_cast<int>(std::lround(width))) : Even(width);
    height_ = exact ? static_cast<int>(height) : Even(height);
}

void PictureChain::Add(const AVFrame& frame) {
    Input input = InputOf(frame);
    seen_interlaced_ = seen_interlaced_ || input.interlaced;
    input.interlaced = seen_interlaced_ && form_.deinterlaced;
    if (!graph_ || !(input == input_)) {
        Finish();
        Build(input);
    }
    const auto numbered = Clone(frame);
    numbered->pts = count_++;
    Checked(av_buffersrc_add_frame_flags(in_, numbered.get(), AV_BUFFERSRC_FLAG_KEEP_REF),
            "picture");
    TakeAll();
}

void PictureChain::Finish() {
    if (!graph_) return;
    Checked(av_buffersrc_close(in_, count_, 0), "picture");
    TakeAll();
    graph_.reset();
}

void PictureChain::TakeAll() {
    for (;;) {
        const int result = av_buffersink_get_frame(out_, filtered_.get());
        if (result == AVERROR(EAGAIN) || result == AVERROR_EOF) return;
        Checked(result, "filters");
        taker_(*filtered_);
        av_frame_unref(filtered_.get());
    }
}

void PictureChain::Build(const Input& input) {
    input_ = input;
    graph_ = Owned(avfilter_graph_alloc());
    in_ = MakeSource(*graph_, "in",
                     SourceOptions(input.width, input.height, input.format, input.aspect));
    Checked(avfilter_graph_create_filter(&out_, avfilter_get_by_name("buffersink"), "out", nullptr,
                                         nullptr, graph_.get()),
            "filter output");
    AVFilterContext* picture = nullptr;
    if (overlay_) {
        const base::Bitmap& bitmap = overlay_->bitmap;
        picture =
            MakeSource(*graph_, "picture",
                       SourceOptions(bitmap.Width(), bitmap.Height(), AV_PIX_FMT_BGRA, aspect_));
    }
    InOut picture_in("picture", picture, nullptr);
    InOut inputs("in", in_, picture != nullptr ? &picture_in : nullptr);
    InOut outputs("out", out_, nullptr);
    Checked(avfilter_graph_parse_ptr(graph_.get(), Steps(input).c_str(), &outputs.pointer,
                                     &inputs.pointer, nullptr),
            "filters");
    Checked(avfilter_graph_config(graph_.get(), nullptr), "filters");
    if (picture == nullptr) return;
    const auto frame = FrameOf(overlay_->bitmap);
    frame->pts = 0;
    Checked(av_buffersrc_add_frame(picture, frame.get()), "picture");
    Checked(av_buffersrc_close(picture, 1, 0), "picture");
}

std::string PictureChain::Steps(const Input& input) const {
    static constexpr std::array<const char*, kQuarters> kTurns = {
        "", "transpose=clock,", "hflip,vflip,", "transpose=cclock,"};
    std::string steps = "[in]";
    if (input.interlaced) steps.append("yadif=deint=interlaced,");
    steps.append(kTurns.at(static_cast<std::size_t>(form_.turns)));
    steps.append(ScaleStep(input));
    const std::string format = av_get_pix_fmt_name(form_.format);
    steps.append("format=").append(format);
    if (overlay_) steps.append(OverlayStep(input)).append(",format=").append(format);
    return steps.append("[out]");
}

// The picture takes the colours of the frames, not the other way round.
std::string PictureChain::OverlayStep(const Input& input) const {
    std::string step = "[main];[picture]";
    if (!IsRgb(form_.format)) {
        step.append("scale=out_color_matrix=").append(WantedMatrix(input));
        step.append(WantsWholeRange(input) ? ":out_range=full" : ":out_range=limited");
        step.append(",");
    }
    const PlacedFormat formats = FormatsFor(form_.format);
    step.append("format=").append(formats.picture).append("[laid];[main][laid]overlay=format=");
    step.append(formats.frame).append(":eof_action=repeat:x=").append(Number(overlay_->x));
    return step.append(":y=").append(Number(overlay_->y));
}

std::string PictureChain::WantedMatrix(const Input& input) const {
    return form_.jpegColours ? "bt601" : MatrixName(input.colours);
}

bool PictureChain::WantsWholeRange(const Input& input) const {
    return form_.jpegColours || (form_.keepsRange && IsWholeRange(input.range, input.format));
}

// What need not be said is not: frames that stay as they are pass through unread.
std::string PictureChain::ScaleStep(const Input& input) const {
    std::string step = "scale=";
    step.append(Number(width_)).append(":").append(Number(height_)).append(":flags=bicubic");
    const std::string given = MatrixName(input.colours);
    const std::string wanted = WantedMatrix(input);
    const bool fromRgb = IsRgb(input.format);
    const bool toRgb = IsRgb(form_.format);
    if (!fromRgb && (toRgb || given != wanted)) step.append(":in_color_matrix=").append(given);
    if (!toRgb && (fromRgb || given != wanted)) step.append(":out_color_matrix=").append(wanted);
    const bool whole = IsWholeRange(input.range, input.format);
    const bool wholeWanted = WantsWholeRange(input);
    if (!fromRgb && whole) step.append(":in_range=full");
    if (!toRgb && (wholeWanted || whole)) {
        step.append(wholeWanted ? ":out_range=full" : ":out_range=limited");
    }
    return step.append(",");
}

}  // namespace nqp::companion
