#include "platform/CaseFold.h"
#include "platform/DriveFormConversion.h"
#include "platform/FileFailure.h"
#include "platform/SpecialFolders.h"
#include "production/KnownFile.h"
#include "startup/AppSettings.h"
#include "startup/FileOps.h"
#include "startup/MsgBox.h"
#include "startup/Paths.h"
#include "startup/Settings.h"

namespace nv {

namespace {

// A file check that cannot be answered (a folder that cannot be read) counts as no file.
bool fileThere(const std::string& path) {
    try {
        return fPlainFileExists(path);
    } catch (const FileFailure&) {
        return false;
    }
}

// Brings one row into the production folder; false when it is nowhere or could not be brought.
bool bringIntoProduction(const std::string& name, const std::string& production,
                         const std::string& virtualStore, const std::string& program) {
    if (fileThere(production + name))
        return true;
    try {
        if (!virtualStore.empty() && fileThere(virtualStore + name)) {
            subMoveFile(virtualStore + name, production + name);
            return true;
        }
        if (fileThere(program + name)) {
            subCopyFile(program + name, production + name);
            return true;
        }
    } catch (const FileFailure&) {
        // A file in use or a full disk: the production folder may still lack it.
        return fileThere(production + name);
    }
    return false;
}

void deleteIfThere(const std::string& path) {
    try {
        if (fPlainFileExists(path))
            subDeleteFile(path);
    } catch (const FileFailure&) {
        // A read-only old-style file stays; the next start tries again.
    }
}

// Ends path in a backslash; false when it does not start with a drive letter.
bool settleProgramPath(std::string& path) {
    if (path.empty() || path.back() != '\\')
        path += '\\';
    return path.size() >= 2 && path[1] == ':';
}

// The production folder of a settled program path.
std::string productionFolderOfProgram(const std::string& path) {
    std::vector<std::string> parts = splitPath(path);
    std::string installFolder = parts[parts.size() - 2];
    std::string head = parts[0] + "\\" + parts[1];
    std::string roaming;
    if (upperCase(head) == upperCase(fSpecialFolder(CSIDL_PROGRAM_FILES)))
        roaming = fSpecialFolder(CSIDL_APPDATA);
    return roaming.empty() ? path : roaming + "\\" + installFolder + "\\";
}

} // namespace

std::string fProductionFolderOf(std::string path) {
    return settleProgramPath(path) ? productionFolderOfProgram(path) : "";
}

std::string settingsFileOfThisStart() {
    const std::string production = fProductionFolderOf(AppPath());
    if (production.empty())
        return "";
    try {
        return nativeFormOf(production + kIniFileName);
    } catch (const FileFailure&) {
        return "";
    }
}

std::string fFindAppDir(std::string& path, uint8_t& status) {
    if (!settleProgramPath(path)) {
        MsgBox("Geen Directory");
        return "";
    }
    std::string tail = path.substr(2);
    auto& known = AppSettings.strKnownFiles;
    for (int row = 0; row <= 10; ++row)
        known[static_cast<std::size_t>(row)] = fKnownFileName(row);

    const std::string program = path;
    std::string production = productionFolderOfProgram(path);
    std::string virtualStore;
    uint8_t result = 0;

    if (production != program) {
        std::string local = fSpecialFolder(CSIDL_LOCAL_APPDATA);
        if (!local.empty())
            virtualStore = local + "\\VirtualStore" + tail;
        if (!fileThere(production + "*.*"))
            subMakeTree(production);
        for (int row = 0; row <= 10; ++row) {
            if (isOldStyleRow(row))
                continue;
            if (bringIntoProduction(known[static_cast<std::size_t>(row)], production, virtualStore,
                                    program))
                continue;
            result = fFileMissing(row);
            if (result == 1)
                break;
        }
    } else {
        // Not under the program files folder (or no per-user folder to go to): files stay put.
        for (int row = 0; row <= 10; ++row) {
            if (fileThere(program + known[static_cast<std::size_t>(row)]))
                continue;
            result = fFileMissing(row);
            if (result == 1)
                break;
        }
    }

    std::string iniPath = production + known[4];
    subReconcileBackupList(production, iniPath);
    for (int row : {8, 9}) {
        deleteIfThere(production + known[static_cast<std::size_t>(row)]);
        if (!virtualStore.empty())
            deleteIfThere(virtualStore + known[static_cast<std::size_t>(row)]);
    }
    subWriteIni(iniPath, kSectionBasic, "dirfrom", production);
    status = result;
    for (auto& name : known)
        name.clear();
    return production;
}

} // namespace nv
