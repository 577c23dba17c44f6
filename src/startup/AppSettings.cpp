#include "startup/AppSettings.h"

#include "platform/Platform.h"

namespace nv {

AppSettingsRecord AppSettings;
AppRecord App;

std::string AppPath() {
    return platform().process->appPath();
}

} // namespace nv
