#pragma once

#include <string>

namespace nqp::test {

// A command of this program, with the stand-in's folder in UTF-8 behind it: begins a job, waits
// until the stand-in has been told something and ends while the call hangs. Fails when none does.
inline constexpr char kLeaveJobHanging[] = "--leave-job-hanging";
int LeaveJobHanging(const std::string& folder);

}  // namespace nqp::test
