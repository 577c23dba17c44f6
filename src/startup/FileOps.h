#pragma once

#include <string>
#include <vector>

namespace nv {

class FileSystem;

// The file operations of the logic, on drive-form paths, through the platform; each failure
// throws FileFailure.
std::string fFirstMatch(const std::string& spec);
bool fPlainFileExists(const std::string& spec);
void subMoveFile(const std::string& oldPath, const std::string& newPath);
void subCopyFile(const std::string& source, const std::string& destination);
void subDeleteFile(const std::string& path);
void subMakeFolder(const std::string& path);
void subDeleteByPattern(const std::string& spec);
void subRemoveFolder(const std::string& path);
void subWriteFile(const std::string& path, const std::string& bytes);
// Never fails.
void subRemoveCopyLeftovers(const std::string& folder);
// The file system these operations go to, for what works on it as a whole (a CopyBatch).
FileSystem& fileSystem();
// The names of a folder's subfolders and of its plain files matching pattern, sorted without
// regard to case; hidden ones are left out.
std::vector<std::string> fListFolders(const std::string& folder);
std::vector<std::string> fListFiles(const std::string& folder, const std::string& pattern);

} // namespace nv
