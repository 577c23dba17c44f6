#include "startup/Paths.h"

#include "platform/FailureText.h"
#include "platform/Platform.h"
#include "startup/FileOps.h"
#include "startup/MsgBox.h"

namespace nv {

std::vector<std::string> splitPath(const std::string& path) {
    std::vector<std::string> parts;
    if (path.empty())
        return parts;
    std::size_t start = 0;
    for (;;) {
        std::size_t cut = path.find('\\', start);
        parts.push_back(
            path.substr(start, cut == std::string::npos ? std::string::npos : cut - start));
        if (cut == std::string::npos)
            return parts;
        start = cut + 1;
    }
}

std::string fFileOfPath(std::string& path) {
    if (!path.empty() && path.back() == '\\')
        path.pop_back();
    std::vector<std::string> parts = splitPath(path);
    if (parts.empty())
        throw fileFailure(kFailSubscript);
    return parts.back();
}

std::string folderOf(const std::string& path) {
    const std::size_t cut = path.find_last_of('\\');
    return cut == std::string::npos ? std::string() : path.substr(0, cut);
}

std::string bareNameOf(const std::string& path) {
    return path.substr(path.find_last_of('\\') + 1);
}

std::string folderWithoutTrailingBackslash(std::string folder) {
    while (folder.size() > 3 && folder.back() == '\\')
        folder.pop_back();
    if (folder.size() == 2 && folder[1] == ':')
        folder += '\\';
    return folder;
}

std::string folderWithTrailingBackslash(const std::string& folder) {
    return !folder.empty() && folder.back() == '\\' ? folder : folder + '\\';
}

std::string fSpecialFolder(int csidl) {
    return platform().folders->folder(csidl);
}

void subMakeTree(std::string path) {
    try {
        if (!path.empty() && path.back() == '\\')
            path.pop_back();
        std::vector<std::string> parts = splitPath(path);
        if (parts.empty())
            return;
        std::string current = parts[0];
        for (std::size_t i = 1; i < parts.size(); ++i) {
            current += "\\" + parts[i];
            goOnBehind([&] {
                if (!fPlainFileExists(current))
                    subMakeFolder(current);
            });
        }
    } catch (const FileFailure& failure) {
        MsgBox(failure.Description, Buttons::OK, Icon::None, DefaultButton::First,
               std::to_string(failure.Number));
    }
}

} // namespace nv
