#pragma once

#include <exception>
#include <stdexcept>
#include <string>

namespace nqp::forms {

// Ends the handler that throws it; the program goes on. Its text is a sentence for the user.
class RunTimeError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// Who started the handler: a person's own click or key, or the program (timers, painting, start).
enum class Origin { User, Program };

using RunTimeErrorHandler = void (*)(const std::string& sentence, Origin origin);

// Set once, before the first window is loaded. Without one, errors are dropped.
void SetRunTimeErrorHandler(RunTimeErrorHandler handler);
void ReportRunTimeError(const std::exception& error, Origin origin) noexcept;

// The event boundary: runs a handler and lets no exception out.
template <class Handler>
void Guarded(Origin origin, Handler&& handler) noexcept {
    try {
        handler();
    } catch (const std::exception& error) {
        ReportRunTimeError(error, origin);
    }
}

}  // namespace nqp::forms
