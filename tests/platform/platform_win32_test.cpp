// What only the Windows file system shows: sharing, the hidden, system and read-only attributes,
// and the machine's own folders. The rest of the contract is in files_test.cpp.
#include "platform/FileFailure.h"
#include "platform/Platform.h"
#include "platform/win32/Win32Text.h"
#include "support/FailureOf.h"
#include "support/TempFolder.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <filesystem>
#include <set>

namespace fs = std::filesystem;
using nvtest::failureOf;

namespace {

class Win32Platform : public ::testing::Test {
protected:
    std::set<std::string> entries() {
        std::set<std::string> names;
        for (const auto& entry : fs::directory_iterator(dir.native()))
            names.insert(entry.path().filename().string());
        return names;
    }
    std::wstring wide(const std::string& relative) {
        return nv::win32::widePath(dir.drive(relative));
    }
    void setAttributes(const std::string& relative, DWORD attributes) {
        ASSERT_TRUE(SetFileAttributesW(wide(relative).c_str(), attributes));
    }
    nv::Platform native = nv::nativePlatform();
    nv::FileSystem& files = *native.files;
    nvtest::TempFolder dir;
};

// A refused copy takes its temporary file away with it.
TEST_F(Win32Platform, AFileHeldOpenWithoutSharingIsRefused) {
    dir.write("held.txt", "held");
    dir.write("src.txt", "new");
    HANDLE held = CreateFileW(wide("held.txt").c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING,
                              FILE_ATTRIBUTE_NORMAL, nullptr);
    ASSERT_NE(INVALID_HANDLE_VALUE, held);
    EXPECT_EQ(failureOf([&] { files.deleteFile(dir.drive("held.txt")); }), nv::kFailAccessRefused);
    EXPECT_EQ(failureOf([&] { files.copyFile(dir.drive("held.txt"), dir.drive("c.txt")); }),
              nv::kFailSourceInUse);
    EXPECT_EQ(failureOf([&] { files.copyFile(dir.drive("src.txt"), dir.drive("held.txt")); }),
              nv::kFailAccessRefused);
    CloseHandle(held);
    EXPECT_EQ("held", dir.read("held.txt"));
    EXPECT_EQ(std::set<std::string>({"held.txt", "src.txt"}), entries());
}

TEST_F(Win32Platform, HiddenAndSystemFilesAreNeitherMatchedNorDeleted) {
    for (const char* name : {"b.txt", "c.txt", "Plain.TXT"})
        dir.write(name, name);
    setAttributes("b.txt", FILE_ATTRIBUTE_HIDDEN);
    setAttributes("c.txt", FILE_ATTRIBUTE_SYSTEM);
    setAttributes("Plain.TXT", FILE_ATTRIBUTE_READONLY);
    EXPECT_EQ("Plain.TXT", files.firstMatch(dir.drive("*.txt")));
    EXPECT_EQ("", files.firstMatch(dir.drive("b.txt")));
    EXPECT_EQ("", files.firstMatch(dir.drive("c.txt")));
    setAttributes("Plain.TXT", FILE_ATTRIBUTE_NORMAL);
    files.deleteByPattern(dir.drive("*.*"));
    EXPECT_EQ(std::set<std::string>({"b.txt", "c.txt"}), entries());
}

// Time and contents are tried through the backup run and the restore. A new copy takes the
// source's read-only attribute; a file replaced keeps its own attributes, and a read-only one is
// not replaced.
TEST_F(Win32Platform, CopyAttributesComeFromTheFileReplacedOrElseTheSource) {
    const std::string bytes(300000, 'q');
    dir.write("src.dat", bytes);
    dir.write("dst.dat", "old");
    setAttributes("src.dat", FILE_ATTRIBUTE_READONLY);
    setAttributes("dst.dat", FILE_ATTRIBUTE_ARCHIVE);
    files.copyFile(dir.drive("src.dat"), dir.drive("new.dat"));
    files.copyFile(dir.drive("src.dat"), dir.drive("dst.dat"));
    const DWORD copied = GetFileAttributesW(wide("new.dat").c_str());
    EXPECT_TRUE((copied & FILE_ATTRIBUTE_READONLY) && !(copied & FILE_ATTRIBUTE_HIDDEN));
    EXPECT_FALSE(GetFileAttributesW(wide("dst.dat").c_str()) & FILE_ATTRIBUTE_READONLY);
    EXPECT_EQ(bytes, dir.read("new.dat"));
    EXPECT_EQ(bytes, dir.read("dst.dat"));
    EXPECT_EQ(failureOf([&] { files.copyFile(dir.drive("dst.dat"), dir.drive("new.dat")); }),
              nv::kFailAccessRefused);
    EXPECT_EQ(std::set<std::string>({"src.dat", "dst.dat", "new.dat"}), entries());
}

TEST(Win32Machine, SpecialFoldersAreFoldersOnADrive) {
    nv::Platform native = nv::nativePlatform();
    for (int csidl : {26, 28, 38}) {
        const std::string folder = native.folders->folder(csidl);
        EXPECT_TRUE(folder.size() >= 3 && folder[1] == ':' && folder.back() != '\\') << folder;
        EXPECT_TRUE(fs::is_directory(nv::win32::widePath(folder))) << folder;
    }
    EXPECT_EQ("", native.folders->folder(0x7F));
}

} // namespace
