#pragma once

#include "platform/FileSystem.h"
#include "support/TempFolder.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <optional>
#include <string>
#include <vector>

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

// The files of this machine on a medium that does not always give back what it was given: once
// a group of copies is flushed, fault may change what the medium holds. Nothing else differs,
// so what the file layer reads back and compares is the real thing.
class FaultyMedium : public NativeFiles {
public:
    void flushStaged(const std::vector<nv::StagedCopy>& copies) override {
        NativeFiles::flushStaged(copies);
        if (fault)
            fault(copies);
    }
    std::function<void(const std::vector<nv::StagedCopy>&)> fault;

    // One byte flipped, some way from the end: a worn block late in the file.
    static void flipByte(const std::string& native, std::uintmax_t fromEnd) {
        const std::filesystem::path path = fromUtf8(native);
        const auto at = static_cast<std::streamoff>(std::filesystem::file_size(path) - fromEnd);
        std::fstream file(path, std::ios::binary | std::ios::in | std::ios::out);
        file.seekg(at);
        char c = static_cast<char>(file.get() ^ 0x5A);
        file.seekp(at);
        file.put(c);
    }

    // A stick that holds less than it says: what it takes past its real end lands on what it
    // took first. At every flush the group's last file is written over the first file of the
    // whole run, in the first file's own length, placed or not.
    void wrapAround() {
        first_.reset();
        fault = [this](const std::vector<nv::StagedCopy>& copies) {
            if (!first_)
                first_ = copies.front();
            const nv::StagedCopy& last = copies.back();
            if (last.temporary == first_->temporary)
                return;
            const bool sameGroup = std::any_of(copies.begin(), copies.end(), [&](const auto& c) {
                return c.temporary == first_->temporary;
            });
            const std::filesystem::path victim =
                fromUtf8(sameGroup ? first_->temporary : first_->target);
            std::ifstream in(fromUtf8(last.temporary), std::ios::binary);
            std::string bytes(std::istreambuf_iterator<char>(in), {});
            bytes.resize(std::filesystem::file_size(victim), '\0');
            std::fstream(victim, std::ios::binary | std::ios::in | std::ios::out)
                .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        };
    }

private:
    std::optional<nv::StagedCopy> first_;
};

} // namespace nvtest
