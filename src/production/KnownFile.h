#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace nv {

// The production files of the host product, by row number.
struct KnownFile {
    int16_t row;
    const char* name;
};

extern const std::array<KnownFile, 11> kKnownFiles;

// Rows 8 and 9 are old-style files: deleted, and taken out of the list.
inline bool isOldStyleRow(int row) {
    return row == 8 || row == 9;
}
// Rows the program cannot do without.
inline bool isRequiredRow(int row) {
    return row == 0 || row == 1 || row == 3;
}

std::string fKnownFileName(int row);
// The status of one row that was found missing: 1 required, 2 not.
uint8_t fFileMissing(int row);

// Settles the production folder (with trailing backslash), brings the known files into it and
// reconciles the list; "" when the program folder has no drive letter. path gets its trailing
// backslash in the caller's string; status is written at the end, 0, 1 or 2.
std::string fFindAppDir(std::string& path, uint8_t& status);
// The production folder fFindAppDir settles for a program in path, without touching a file; ""
// when the program folder has no drive letter.
std::string fProductionFolderOf(std::string path);
// The settings file this start of the program will use, native; "" when it cannot be told.
std::string settingsFileOfThisStart();

// Brings the list in the settings file at iniPath in step with the known files in folder.
void subReconcileBackupList(const std::string& folder, const std::string& iniPath);

} // namespace nv
