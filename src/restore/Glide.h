#pragma once

#include <cstdint>

namespace nv {

// A value as a signed 16-bit integer, rounded to the nearest, a half going to the even one.
int16_t fRoundHalfEven(double value);

// The step of a glide of 1000 moves over a distance in twips.
inline int16_t fGlideStep(int distance) {
    return fRoundHalfEven(distance / 1000.0);
}

} // namespace nv
