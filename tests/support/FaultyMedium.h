#pragma once

#include "platform/FileSystem.h"
#include "support/TempFolder.h"

#include <fstream>
#include <functional>

#ifdef _WIN32
#include "platform/win32/Win32FileSystem.h"
#else
#include "platform/Platform.h"
#include "platform/posix/DriveTable.h"
#include "platform/posix/PosixFileSystem.h"
#endif

namespace nvtest {

#ifdef _WIN32
using NativeFiles = nv::Win32FileSystem;
#else
struct NativeFiles : nv::PosixFileSystem {
    NativeFiles() : PosixFileSystem(nv::driveTableOf(nv::nativePlatform())) {}
};
#endif

// The files of this machine on a medium that may change what it holds once a group of copies is
// flushed (fault); it keeps the folders it flushed, and takes names as FAT does when told.
class FaultyMedium : public NativeFiles {
public:
    void flushStaged(const std::vector<nv::StagedCopy>& copies) override {
        NativeFiles::flushStaged(copies);
        if (fault)
            fault(copies);
    }
    void flushFolder(const std::string& folder) override {
        flushed.push_back(folder);
        NativeFiles::flushFolder(folder);
    }
    nv::NameRules nameRulesOf(const std::string& folder) override {
        return fatNames ? nv::NameRules::Fat : NativeFiles::nameRulesOf(folder);
    }
    // One byte flipped, fromEnd bytes before the end: a worn block.
    static void flipByte(const std::string& native, std::streamoff fromEnd) {
        std::fstream file(fromUtf8(native), std::ios::binary | std::ios::in | std::ios::out);
        file.seekg(-fromEnd, std::ios::end);
        const char flipped = static_cast<char>(file.peek() ^ 0x5A);
        file.seekp(-fromEnd, std::ios::end);
        file.put(flipped);
    }

    std::function<void(const std::vector<nv::StagedCopy>&)> fault;
    std::vector<std::string> flushed;
    bool fatNames = false;
};

} // namespace nvtest
