#include "platform/posix/PosixMachine.h"

#include "platform/DateText.h"

#include <climits>
#include <cstdlib>
#include <ctime>
#include <unistd.h>

namespace nv {

namespace {

std::string environment(const char* name) {
    const char* value = std::getenv(name);
    return value && value[0] == '/' ? value : "";
}

std::string withoutTrailingSlash(std::string path) {
    while (path.size() > 1 && path.back() == '/')
        path.pop_back();
    return path;
}

std::tm localNow() {
    std::time_t t = std::time(nullptr);
    std::tm local{};
    ::localtime_r(&t, &local);
    return local;
}

} // namespace

std::string PosixSpecialFolders::folder(int csidl) {
    std::string native;
    std::string home = environment("HOME");
    switch (csidl) {
    case CSIDL_APPDATA:
        native = environment("XDG_CONFIG_HOME");
        if (native.empty() && !home.empty())
            native = home + "/.config";
        break;
    case CSIDL_LOCAL_APPDATA:
        native = environment("XDG_DATA_HOME");
        if (native.empty() && !home.empty())
            native = home + "/.local/share";
        break;
    case CSIDL_PROGRAM_FILES:
        native = "/opt";
        break;
    default:
        return "";
    }
    if (native.empty())
        return "";
    return drives_.toDriveForm(withoutTrailingSlash(native));
}

Date PosixClock::today() {
    std::tm local = localNow();
    return dateFromCivil({local.tm_year + 1900, local.tm_mon + 1, local.tm_mday});
}

Moment PosixClock::now() {
    timespec stamp{};
    ::clock_gettime(CLOCK_REALTIME, &stamp);
    std::tm local{};
    ::localtime_r(&stamp.tv_sec, &local);
    Date date = dateFromCivil({local.tm_year + 1900, local.tm_mon + 1, local.tm_mday});
    Moment ofDay = ((local.tm_hour * 60 + local.tm_min) * 60 + local.tm_sec) * Moment{1000};
    return date * kMsPerDay + ofDay + stamp.tv_nsec / 1'000'000;
}

std::string PosixProcess::appPath() {
    char buffer[PATH_MAX];
    ssize_t n = ::readlink("/proc/self/exe", buffer, sizeof buffer - 1);
    if (n <= 0)
        return drives_.toDriveForm("/");
    std::string exe(buffer, static_cast<std::size_t>(n));
    std::size_t cut = exe.find_last_of('/');
    std::string folder = cut == 0 ? "/" : exe.substr(0, cut);
    return drives_.toDriveForm(folder);
}

} // namespace nv
