#pragma once

#include <atomic>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace nqp::test {

// An empty folder of the test's own, with a blank and a non-Latin letter in its name; it goes with
// the object.
class TempFolder {
public:
    TempFolder() {
        static std::atomic<int> count = 0;
        do {
            path_ = std::filesystem::temp_directory_path() /
                    (std::u8string(u8"nqp \u0436 ") + Digits(++count));
        } while (!std::filesystem::create_directory(path_));
    }
    ~TempFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    const std::filesystem::path& Path() const { return path_; }

    std::string Content(const std::string& name) const {
        std::ifstream file(path_ / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    void Put(const std::string& name, const std::string& content) const {
        std::ofstream(path_ / name, std::ios::binary) << content;
    }
    bool Has(const std::string& name) const { return std::filesystem::exists(path_ / name); }

private:
    static std::u8string Digits(int number) {
        const std::string digits = std::to_string(number);
        return {digits.begin(), digits.end()};
    }

    std::filesystem::path path_;
};

}  // namespace nqp::test
