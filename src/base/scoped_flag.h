#pragma once

namespace nqp::base {

// Raises a flag for as long as the object lives.
class ScopedFlag {
public:
    explicit ScopedFlag(bool& flag) : flag_(flag) { flag_ = true; }
    ~ScopedFlag() { flag_ = false; }
    ScopedFlag(const ScopedFlag&) = delete;
    ScopedFlag& operator=(const ScopedFlag&) = delete;

private:
    bool& flag_;
};

}  // namespace nqp::base
