#pragma once

#include "server/job_values.h"

namespace nqp::companion {

// What the jobs of a server are.
class JobWork {
public:
    // Throws CutError when it can be seen from the values that there is no such job.
    virtual void Check(const JobValues& values) = 0;
    // Does the job; on any thread. One that is cancelled ends like one that is done. Throws
    // CutError, or another std::exception.
    virtual void Do(const JobValues& values) = 0;

protected:
    ~JobWork() = default;
};

}  // namespace nqp::companion
