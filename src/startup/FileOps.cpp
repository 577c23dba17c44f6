#include "startup/FileOps.h"

#include "platform/Platform.h"

namespace nv {

std::string fFirstMatch(const std::string& spec) {
    return platform().files->firstMatch(spec);
}
bool fPlainFileExists(const std::string& spec) {
    return !fFirstMatch(spec).empty();
}
void subMoveFile(const std::string& oldPath, const std::string& newPath) {
    platform().files->moveFile(oldPath, newPath);
}
void subCopyFile(const std::string& source, const std::string& destination) {
    platform().files->copyFile(source, destination);
}
void subDeleteFile(const std::string& path) {
    platform().files->deleteFile(path);
}
void subMakeFolder(const std::string& path) {
    platform().files->makeFolder(path);
}
void subDeleteByPattern(const std::string& spec) {
    platform().files->deleteByPattern(spec);
}
void subRemoveFolder(const std::string& path) {
    platform().files->removeFolder(path);
}
void subWriteFile(const std::string& path, const std::string& bytes) {
    platform().files->writeFile(path, bytes);
}
void subRemoveCopyLeftovers(const std::string& folder) {
    platform().files->removeCopyLeftovers(folder);
}
FileSystem& fileSystem() {
    return *platform().files;
}
std::vector<std::string> fListFolders(const std::string& folder) {
    return platform().files->listFolders(folder);
}
std::vector<std::string> fListFiles(const std::string& folder, const std::string& pattern) {
    return platform().files->listFiles(folder, pattern);
}

} // namespace nv
