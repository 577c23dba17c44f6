#include "startup/AppSettings.h"

#include "platform/Platform.h"

namespace nv {

AppSettingsRecord AppSettings;
AppRecord App;

std::string AppPath() {
    return platform().process->appPath();
}

} // namespace nv

namespace nv {

std::string fVersionText(const std::string& word) {
    return word + std::to_string(App.Major) + "." + std::to_string(App.Minor) + "." +
           std::to_string(App.Revision);
}

} // namespace nv
