#include "restore/Glide.h"

#include <cmath>
#include <limits>

namespace nv {

int16_t fRoundHalfEven(double value) {
    double whole = std::floor(value);
    double rest = value - whole;
    if (rest > 0.5 || (rest == 0.5 && std::fmod(whole, 2.0) != 0.0))
        whole += 1.0;
    if (whole > std::numeric_limits<int16_t>::max())
        return std::numeric_limits<int16_t>::max();
    if (whole < std::numeric_limits<int16_t>::min())
        return std::numeric_limits<int16_t>::min();
    return static_cast<int16_t>(whole);
}

} // namespace nv
