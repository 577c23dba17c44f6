#pragma once

#include "platform/ProfileStore.h"
#include "platform/posix/DriveTable.h"

#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>

namespace nv {

// Profile files on Linux, laid out as the home platform lays them out, in UTF-8 (the system's
// code page here); a file that is no valid UTF-8 is read and kept as Windows-1252, a UTF-16
// file as UTF-16. The parsed file stays in
// memory while its size, times and inode are unchanged, and every store replaces the file
// atomically through a hidden temporary file in the same folder.
class PosixProfileStore : public ProfileStore {
public:
    explicit PosixProfileStore(DriveTable& drives);
    ~PosixProfileStore() override;

    std::string getString(const std::string& section, const std::string& key,
                          const std::string& fallback, std::size_t size,
                          const std::string& file) override;
    bool writeString(const std::string& section, const std::string& key, const std::string& value,
                     const std::string& file) override;
    void beginBatch() override;
    void endBatch() override;
    bool mayStore(const std::string& file) override;

    // The parsed file, and where a drive-form path leads; both live in the implementation.
    struct Image;
    struct Target;

private:
    Target locate(const std::string& file);
    Image* current(const Target& target);
    void forgetClean();

    // Drive-form paths already turned into native ones, with the drive root they went through.
    struct Resolved {
        std::string native;
        std::string root;
    };

    DriveTable& drives_;
    std::mutex mutex_;
    int batchDepth_ = 0;
    std::unordered_map<std::string, std::unique_ptr<Image>> images_;
    std::unordered_map<std::string, Resolved> resolved_;
};

} // namespace nv
