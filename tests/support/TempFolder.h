#pragma once

#include <cstddef>
#include <filesystem>
#include <string>

namespace nvtest {

// A path in UTF-8, as the platform gives it, for the standard library.
inline std::filesystem::path fromUtf8(const std::string& text) {
    return std::filesystem::path(std::u8string(text.begin(), text.end()));
}

// A fresh folder under the system's temporary folder, or one given, removed with all in it.
class TempFolder {
public:
    TempFolder();
    explicit TempFolder(const std::filesystem::path& under);
    ~TempFolder();
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    const std::filesystem::path& native() const { return native_; }
    // The folder in drive form, without trailing backslash.
    std::string drive() const;
    // Drive form of a path below the folder; "a/b" and "a\\b" both give ...\a\b.
    std::string drive(const std::string& relative) const;
    std::filesystem::path native(const std::string& relative) const;

    // Writes a file below the folder (parents made), and reads one back.
    void write(const std::string& relative, const std::string& bytes) const;
    std::string read(const std::string& relative) const;
    bool exists(const std::string& relative) const;
    // Hides an entry below the folder (a dot name is hidden on Linux; Windows wants the attribute).
    void hide(const std::string& relative) const;

    // Leaves the hidden temporary ("a/.NV.ini.nvtmp-...") a copy to relative ("a/NV.ini") leaves
    // when it is killed halfway.
    void leaveCopyLeftover(const std::string& relative) const;
    // The copy temporaries at any depth below relative ("" for the whole folder).
    std::size_t copyLeftovers(const std::string& relative = "") const;

private:
    std::filesystem::path native_;
};

} // namespace nvtest
