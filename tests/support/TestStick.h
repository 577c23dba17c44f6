#pragma once

#include "support/TempFolder.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace nvtest {

// A folder below a temporary one standing as the stick E: while this lives (what E: was comes
// back after); on Windows, which cannot give a letter for one process alone, the folder's path.
class TestStick {
public:
    explicit TestStick(const TempFolder& temp, const std::string& folder = "stick");
    ~TestStick();
    TestStick(const TestStick&) = delete;
    TestStick& operator=(const TestStick&) = delete;

    // What the settings' DriveTarget holds: "E:", or the folder in drive form.
    const std::string& drive() const { return drive_; }
    // A path below the stick, given in UTF-8.
    std::filesystem::path native(const std::string& relative = "") const;
    // A backup folder on the stick in which each of files ("NV.ini", "Norvale/NV.ini") holds
    // its own path below the stick ("Flat/NV.ini"); its drive form.
    std::string backupFolder(const std::string& name, const std::vector<std::string>& files) const;

private:
    std::filesystem::path root_;
    std::string drive_;
    std::optional<std::string> earlierE_;
};

} // namespace nvtest
