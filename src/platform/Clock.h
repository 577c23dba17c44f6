#pragma once

#include <cstdint>

namespace nv {

// A date as a count of days since 1970-01-01, without time of day.
using Date = int32_t;

// A local date with its time of day, in milliseconds since 1970-01-01 00:00.
using Moment = int64_t;
constexpr Moment kMsPerDay = 86'400'000;

class Clock {
public:
    virtual ~Clock() = default;
    virtual Date today() = 0;
    virtual Moment now() = 0;
};

} // namespace nv
