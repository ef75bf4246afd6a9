// The companion's command line: an argument a line.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <string>
#include <vector>

#include "command/cut_options.h"

namespace {

using nqp::companion::CutError;
using nqp::companion::CutOptions;
using nqp::companion::UsageError;

void Require(bool condition) {
    if (!condition) std::abort();
}

void CheckUnderstood(const CutOptions& options) {
    const auto& job = options.job;
    Require(!job.source.empty() && !job.output.empty());
    Require(std::isfinite(job.begin) && job.begin >= 0);
    Require(std::isfinite(job.end) && job.end >= 0);
    try {
        nqp::companion::CheckValues(job);
        Require(job.percentage >= 1 && job.percentage <= 100);
        Require(job.mode == nqp::core::JobMode::Image || job.begin < job.end);
    } catch (const CutError& error) {
        Require(error.what()[0] != '\0');
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::istringstream lines(std::string(reinterpret_cast<const char*>(data), size));
    std::vector<std::string> arguments;
    for (std::string line; std::getline(lines, line);) {
        if (const auto time = nqp::companion::ParseTime(line)) Require(*time >= 0);
        arguments.push_back(line);
    }
    try {
        CheckUnderstood(nqp::companion::ParseCutOptions(arguments));
    } catch (const UsageError& error) {
        Require(error.what()[0] != '\0');
    }
    return 0;
}
