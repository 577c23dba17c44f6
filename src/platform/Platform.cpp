#include "platform/Platform.h"

namespace nv {

Platform& platform() {
    static Platform current;
    return current;
}

} // namespace nv
