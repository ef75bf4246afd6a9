#pragma once

namespace nqp::test {

// Serves one job's object as the companion does. The source that the job is told says what the job
// does:
//   refuse TEXT  there is no such job, for this reason
//   fail TEXT    fails, for this reason
//   wait         goes on until the cancel file is there
//   ask          asks for the format and writes its number, or "cancelled", to the output
//   else         writes what it was told to the output
int ServeScriptedJob();

}  // namespace nqp::test
