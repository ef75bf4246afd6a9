#include "base/resample.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace nqp::base {
namespace {

// How much of a source line goes into a target line. A line is a row or a column.
struct Tap {
    std::size_t source;
    std::int32_t weight;
};

// The taps of every target line. The weights are whole numbers that add up to the same sum in each
// line, which makes every mean exact.
class Axis {
public:
    Axis(int source, int target) : source_(source), target_(target) {
        ends_.reserve(static_cast<std::size_t>(target));
        for (int line = 0; line < target; ++line) {
            target > source ? Interpolate(line) : Cover(line);
            ends_.push_back(taps_.size());
        }
    }

    std::span<const Tap> Of(int line) const {
        const auto index = static_cast<std::size_t>(line);
        const std::size_t begin = index == 0 ? 0 : ends_[index - 1];
        return std::span(taps_).subspan(begin, ends_[index] - begin);
    }

    std::int64_t Sum() const { return target_ > source_ ? kInterpolatedSum : source_; }

private:
    static constexpr std::int32_t kInterpolatedSum = 1 << 16;

    void Add(std::int64_t source, std::int64_t weight) {
        if (weight == 0) return;
        const std::int64_t inside = std::clamp<std::int64_t>(source, 0, source_ - 1);
        taps_.push_back({static_cast<std::size_t>(inside), static_cast<std::int32_t>(weight)});
    }

    // In units in which a source line is target_ long and a target line source_ long.
    void Cover(std::int64_t line) {
        const std::int64_t begin = line * source_;
        const std::int64_t end = begin + source_;
        for (std::int64_t i = begin / target_; i * target_ < end; ++i) {
            Add(i, std::min(end, (i + 1) * target_) - std::max(begin, i * target_));
        }
    }

    // The middle of the target line lies `rest` behind the middle of the source line `left`.
    void Interpolate(std::int64_t line) {
        const std::int64_t unit = 2 * static_cast<std::int64_t>(target_);
        const std::int64_t middle = (2 * line + 1) * source_ - target_ + unit;  // not negative
        const std::int64_t left = middle / unit - 1;
        const double rest = static_cast<double>(middle % unit) / static_cast<double>(unit);
        const std::array<std::int64_t, 4> weights = CatmullRom(rest);
        for (std::size_t i = 0; i < weights.size(); ++i) {
            Add(left - 1 + static_cast<std::int64_t>(i), weights[i]);
        }
    }

    static std::array<std::int64_t, 4> CatmullRom(double t) {
        const auto whole = [](double weight) { return std::llround(weight * kInterpolatedSum); };
        const std::int64_t before = whole(((-0.5 * t + 1) * t - 0.5) * t);
        const std::int64_t right = whole(((-1.5 * t + 2) * t + 0.5) * t);
        const std::int64_t after = whole((0.5 * t - 0.5) * t * t);
        return {before, kInterpolatedSum - before - right - after, right, after};
    }

    std::int64_t source_;
    std::int64_t target_;
    std::vector<Tap> taps_;
    std::vector<std::size_t> ends_;
};

constexpr std::size_t kChannels = 4;  // blue, green, red, alpha

// Sums of one row. The largest: 255 * 32767 when shrinking, 255 * 1.25 * 65536 when growing.
using RowSums = std::vector<std::int32_t>;

void AddRow(RowSums& sums, std::span<const Pixel> row, std::int32_t weight) {
    std::int32_t* sum = sums.data();
    for (const Pixel pixel : row) {
        sum[0] += weight * static_cast<std::int32_t>(pixel & 255U);
        sum[1] += weight * static_cast<std::int32_t>(pixel >> 8U & 255U);
        sum[2] += weight * static_cast<std::int32_t>(pixel >> 16U & 255U);
        sum[3] += weight * static_cast<std::int32_t>(pixel >> 24U);
        sum += kChannels;
    }
}

using PixelSums = std::array<std::int64_t, kChannels>;

PixelSums SumsOf(const RowSums& row, std::span<const Tap> taps) {
    PixelSums sums{};
    for (const Tap& tap : taps) {
        const std::int32_t* values = row.data() + tap.source * kChannels;
        for (std::size_t i = 0; i < kChannels; ++i) {
            sums[i] += static_cast<std::int64_t>(tap.weight) * values[i];
        }
    }
    return sums;
}

// Divides sums by the weight in them, to the nearest whole number, halves up.
class Divider {
public:
    explicit Divider(std::int64_t weight)
        : inverse_(1.0 / static_cast<double>(weight)),
          // The sums are whole, so the quarter changes no result; it keeps an exact quotient from
          // falling below itself by the rounding of the inverse.
          half_(static_cast<double>(weight) / 2 + 0.25) {}

    Pixel operator()(const PixelSums& sums) const {
        const Pixel alpha = Quotient(sums[3], 255);
        return alpha << 24U | Quotient(sums[2], alpha) << 16U | Quotient(sums[1], alpha) << 8U |
               Quotient(sums[0], alpha);
    }

private:
    std::uint32_t Quotient(std::int64_t sum, std::uint32_t most) const {
        const double quotient = (static_cast<double>(sum) + half_) * inverse_;
        return static_cast<std::uint32_t>(std::clamp(quotient, 0.0, static_cast<double>(most)));
    }

    double inverse_;
    double half_;
};

// Where each target line of an extended side comes from.
std::vector<std::size_t> ExtendedLines(int source, int at, int target) {
    const int repeated = std::clamp(at, 0, source - 1);
    const int added = std::max(target - source, 0);
    std::vector<std::size_t> lines(static_cast<std::size_t>(target));
    for (int line = 0; line < target; ++line) {
        const int from = line <= repeated ? line : std::max(line - added, repeated);
        lines[static_cast<std::size_t>(line)] = static_cast<std::size_t>(from);
    }
    return lines;
}

}  // namespace

Bitmap Resample(const Bitmap& source, int width, int height) {
    if (source.Width() == width && source.Height() == height) return source;
    if (source.Empty()) return {};
    Bitmap target(width, height);
    if (target.Empty()) return {};
    const Axis columns(source.Width(), width);
    const Axis rows(source.Height(), height);
    const Divider divide(columns.Sum() * rows.Sum());
    RowSums sums(static_cast<std::size_t>(source.Width()) * kChannels);
    for (int y = 0; y < height; ++y) {
        std::ranges::fill(sums, 0);
        for (const Tap& tap : rows.Of(y)) {
            AddRow(sums, source.Row(static_cast<int>(tap.source)), tap.weight);
        }
        const std::span<Pixel> pixels = target.Row(y);
        for (int x = 0; x < width; ++x) {
            pixels[static_cast<std::size_t>(x)] = divide(SumsOf(sums, columns.Of(x)));
        }
    }
    return target;
}

Bitmap ExtendAt(const Bitmap& source, int x, int y, int width, int height) {
    if (source.Empty()) return {};
    Bitmap target(width, height);
    if (target.Empty()) return {};
    const std::vector<std::size_t> columns = ExtendedLines(source.Width(), x, width);
    const std::vector<std::size_t> rows = ExtendedLines(source.Height(), y, height);
    for (int row = 0; row < height; ++row) {
        const std::span<const Pixel> from =
            source.Row(static_cast<int>(rows[static_cast<std::size_t>(row)]));
        std::ranges::transform(columns, target.Row(row).begin(),
                               [from](std::size_t column) { return from[column]; });
    }
    return target;
}

}  // namespace nqp::base
