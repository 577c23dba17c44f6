#pragma once

#include <cstdint>

namespace nv {

// A date as a count of days since 1970-01-01, without time of day.
using Date = int32_t;

struct TimeOfDay {
    int hour = 0;
    int minute = 0;
    int second = 0;
};

class Clock {
public:
    virtual ~Clock() = default;
    virtual Date today() = 0;
    virtual TimeOfDay now() = 0;
};

} // namespace nv
