#include "platform/FatNames.h"

#include <cstring>

namespace nv {

std::optional<FatRefusal> fatRefusal(const std::string& name) {
    for (char c : name) {
        if (static_cast<unsigned char>(c) < 0x20)
            return FatRefusal{FatRefusal::Control};
        if (std::strchr("<>:\"/\\|?*", c) != nullptr)
            return FatRefusal{FatRefusal::Character, c};
    }
    if (!name.empty() && name.back() == '.')
        return FatRefusal{FatRefusal::TrailingDot};
    if (!name.empty() && name.back() == ' ')
        return FatRefusal{FatRefusal::TrailingBlank};
    return std::nullopt;
}

} // namespace nv
