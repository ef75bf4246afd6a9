#pragma once

#include "server/cut_work.h"

namespace nqp::companion {

// The cutter itself.
class LibraryCutter final : public Cutter {
public:
    void Check(const CutJob& job) override { CheckValues(job); }
    std::optional<double> CopyBegin(const CutJob& job, CutWatch& watch) override {
        return companion::CopyBegin(job, watch);
    }
    CutReport Cut(const CutJob& job, CutWatch& watch) override {
        return companion::Cut(job, watch);
    }
};

}  // namespace nqp::companion
