#pragma once

#include <filesystem>
#include <string>
#include <utility>

#include "base/record_file.h"
#include "forms/state.h"

namespace nqp::remote {

// The files of one skin. They are read when they are asked for.
class SkinPackage {
public:
    explicit SkinPackage(std::filesystem::path folder) : folder_(std::move(folder)) {}
    SkinPackage(const std::filesystem::path& programFolder, const std::string& name);

    const std::filesystem::path& Folder() const { return folder_; }
    // Null when the skin has no such file. Throws forms::RunTimeError when it has one that is no
    // readable bitmap.
    forms::Picture LoadPicture(const std::string& fileName) const;

private:
    std::filesystem::path folder_;
};

// Numbers of the records, in the order they are applied.
enum SkinColor : int {
    kPositionLineColor = 1,
    kVolumeLineColor,
    kTitleTextColor,
    kTitleBackColor,
    kMarkButtonBackColor,
    kMarkButtonTextColor,
    kTimeTextColor,
    kTimeBackColor,
    kFieldTextColor,
    kFieldBackColor,
    kListBackColor,
    kListTextColor,
};

// The colour file of a skin: 128-byte records with whole numbers, 0x00BBGGRR. A skin without one
// gets an empty one.
class SkinColors {
public:
    explicit SkinColors(const SkinPackage& skin);

    // A skin that brings no colours.
    bool Empty() const { return file_.Empty(); }
    // Throws forms::RunTimeError when the record is no whole number.
    forms::Color Read(SkinColor record) const;

private:
    base::RecordFile file_;
};

}  // namespace nqp::remote
