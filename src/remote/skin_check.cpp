#include "remote/skin_check.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

#include "base/file.h"
#include "core/skin_files.h"
#include "forms/run_time_error.h"
#include "remote/face.h"
#include "remote/skin_package.h"

namespace nqp::remote {
namespace {

using Findings = std::vector<std::string>;

constexpr double kReadable = 4.5;
constexpr double kMostDistortion = 1.15;

struct PictureFile {
    const char* name;
    base::Size place;  // twips
};

base::Size SizeOf(const base::Rect& place) {
    return {place.width, place.height};
}

const std::array<PictureFile, 18>& PictureFiles() {
    static const std::array<PictureFile, 18> files = {{
        {"backgrnd.bmp", face::kBackdropSize},
        {"button1.bmp", SizeOf(face::kPlay)},
        {"button2.bmp", SizeOf(face::kStop)},
        {"button3.bmp", SizeOf(face::kPause)},
        {"button4.bmp", SizeOf(face::kOpen)},
        {"xbutton1.bmp", SizeOf(face::kPlay)},
        {"xbutton2.bmp", SizeOf(face::kStop)},
        {"xbutton3.bmp", SizeOf(face::kPause)},
        {"xbutton4.bmp", SizeOf(face::kOpen)},
        {"position.bmp", SizeOf(face::kPositionKnob)},
        {"volume.bmp", SizeOf(face::kVolumeKnob)},
        {"options.bmp", SizeOf(face::kOptions)},
        {"help.bmp", SizeOf(face::kHelp)},
        {"playlist.bmp", SizeOf(face::kPlaylist)},
        {"hideremote.bmp", SizeOf(face::kHideRemote)},
        {"hideall.bmp", SizeOf(face::kHideAll)},
        {"exit.bmp", SizeOf(face::kExit)},
        {"resize.bmp", SizeOf(face::kWidthGrip)},
    }};
    return files;
}

std::string Dimensions(int width, int height) {
    return std::to_string(width) + " x " + std::to_string(height);
}

void CheckSize(const PictureFile& file, const base::Bitmap& picture, Findings& findings) {
    const int width = base::RoundHalfEven(file.place.width / face::kPixel);
    const int height = base::RoundHalfEven(file.place.height / face::kPixel);
    const std::string name = file.name;
    const std::string is = " is " + Dimensions(picture.Width(), picture.Height());
    const std::string place = Dimensions(width, height);
    const double distortion = static_cast<double>(picture.Width()) * height /
                              (static_cast<double>(picture.Height()) * width);
    if (picture.Width() < width || picture.Height() < height) {
        findings.push_back(name + is + ", smaller than its place of " + place +
                           ": it will look blurred.");
    } else if (distortion > kMostDistortion || distortion < 1 / kMostDistortion) {
        findings.push_back(name + is + ", which has another shape than its place of " + place +
                           ": it will look distorted.");
    }
}

void CheckPicture(const SkinPackage& skin, const PictureFile& file, Findings& findings) {
    try {
        const auto picture = skin.LoadPicture(file.name);
        if (picture == nullptr) {
            findings.push_back(std::string(file.name) +
                               " is missing: what it dresses keeps the look of the skin before.");
        } else {
            CheckSize(file, *picture, findings);
        }
    } catch (const forms::RunTimeError&) {
        findings.push_back(std::string(file.name) +
                           " is damaged or no BMP file: the skin stops loading there.");
    }
}

// Null also for a damaged one.
forms::Picture PictureOf(const SkinPackage& skin, const std::string& name) {
    try {
        return skin.LoadPicture(name);
    } catch (const forms::RunTimeError&) {
        return nullptr;
    }
}

void CheckHighlight(const SkinPackage& skin, const std::string& button, Findings& findings) {
    const auto normal = PictureOf(skin, button);
    const auto highlighted = PictureOf(skin, "x" + button);
    if (normal == nullptr || highlighted == nullptr) return;
    if (*normal == *highlighted) {
        findings.push_back("x" + button + " is the same picture as " + button +
                           ": nobody will see that the pointer is over the button.");
    }
}

struct Pair {
    SkinColor text;
    SkinColor background;
    const char* what;
};

constexpr std::array<Pair, 5> kReadablePairs = {{
    {kTitleTextColor, kTitleBackColor, "the title"},
    {kMarkButtonTextColor, kMarkButtonBackColor, "the two small buttons"},
    {kTimeTextColor, kTimeBackColor, "the time"},
    {kFieldTextColor, kFieldBackColor, "the fragment fields"},
    {kListTextColor, kListBackColor, "the playlist"},
}};

std::string OneDecimal(double value) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.1f", value);
    return text.data();
}

void CheckContrasts(const SkinColors& colors, Findings& findings) {
    for (const Pair& pair : kReadablePairs) {
        const double contrast = Contrast(colors.Read(pair.text), colors.Read(pair.background));
        if (contrast >= kReadable) continue;
        findings.push_back("The text of " + std::string(pair.what) + " (records " +
                           std::to_string(pair.text) + " and " + std::to_string(pair.background) +
                           ") has a contrast of " + OneDecimal(contrast) + " to 1; " +
                           OneDecimal(kReadable) + " to 1 is the least that reads well.");
    }
}

bool CheckRecord(const SkinColors& colors, int record, Findings& findings) {
    try {
        static_cast<void>(colors.Read(static_cast<SkinColor>(record)));
        return true;
    } catch (const forms::RunTimeError&) {
        findings.push_back("Record " + std::to_string(record) + " of " + core::kSkinColorsName +
                           " is missing or no whole number: the skin stops loading there.");
        return false;
    }
}

void CheckColors(const SkinPackage& skin, Findings& findings) {
    // Reading the colours of a skin that has none would make the file.
    if (base::ReadFile(skin.Folder() / core::kSkinColorsName).empty()) {
        findings.push_back(std::string(core::kSkinColorsName) +
                           " is missing or empty: the colours stay those of the skin before.");
        return;
    }
    const SkinColors colors(skin);
    bool whole = true;
    for (int record = kPositionLineColor; record <= kListTextColor; ++record)
        whole = CheckRecord(colors, record, findings) && whole;
    if (whole) CheckContrasts(colors, findings);
}

double Luminance(forms::Color color) {
    const auto part = [color](unsigned shift) {
        const double value = static_cast<double>(color >> shift & 0xFFU) / 255.0;
        return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * part(0) + 0.7152 * part(8) + 0.0722 * part(16);
}

}  // namespace

double Contrast(forms::Color one, forms::Color other) {
    const auto [dark, light] = std::minmax({Luminance(one), Luminance(other)});
    return (light + 0.05) / (dark + 0.05);
}

Findings CheckSkin(const std::filesystem::path& folder) {
    std::error_code unreadable;
    if (!std::filesystem::is_directory(folder, unreadable)) return {"There is no such folder."};
    const SkinPackage skin(folder);
    Findings findings;
    for (const PictureFile& file : PictureFiles())
        CheckPicture(skin, file, findings);
    for (const char* button : {"button1.bmp", "button2.bmp", "button3.bmp", "button4.bmp"})
        CheckHighlight(skin, button, findings);
    CheckColors(skin, findings);
    return findings;
}

}  // namespace nqp::remote
