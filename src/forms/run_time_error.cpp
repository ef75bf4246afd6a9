#include "forms/run_time_error.h"

namespace nqp::forms {
namespace {

RunTimeErrorHandler installed_handler = nullptr;

}  // namespace

void SetRunTimeErrorHandler(RunTimeErrorHandler handler) {
    installed_handler = handler;
}

void ReportRunTimeError(const std::exception& error, Origin origin) noexcept {
    if (installed_handler == nullptr) return;
    try {
        installed_handler(error.what(), origin);
    } catch (const std::exception&) {
        // Reporting must not fail louder than what it reports.
        return;
    }
}

}  // namespace nqp::forms
