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

TEST_F(Win32Platform, FileHeldOpenWithoutSharingIsRefused) {
    dir.write("held.txt", "held");
    dir.write("src.txt", "new");
    HANDLE held = CreateFileW(wide("held.txt").c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING,
                              FILE_ATTRIBUTE_NORMAL, nullptr);
    ASSERT_NE(INVALID_HANDLE_VALUE, held);
    using nvtest::failureOf;
    EXPECT_EQ(failureOf([&] { files.deleteFile(dir.drive("held.txt")); }), nv::kFailAccessRefused);
    EXPECT_EQ(failureOf([&] { files.copyFile(dir.drive("held.txt"), dir.drive("c.txt")); }),
              nv::kFailSourceInUse);
    EXPECT_EQ(failureOf([&] { files.copyFile(dir.drive("src.txt"), dir.drive("held.txt")); }),
              nv::kFailAccessRefused);
    CloseHandle(held);
    EXPECT_EQ("held", dir.read("held.txt"));
    // A refused copy takes its temporary file away with it.
    EXPECT_EQ(std::set<std::string>({"held.txt", "src.txt"}), entries());
}

TEST_F(Win32Platform, HiddenAndSystemFilesAreNeitherMatchedNorDeleted) {
    dir.write("b.txt", "hidden");
    dir.write("c.txt", "system");
    dir.write("Plain.TXT", "plain");
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

// Time and contents are tried through the backup run and the restore; the attributes are Windows'
// own. A new copy takes the source's read-only attribute; a file replaced keeps its own attributes,
// and a read-only one is not replaced.
TEST_F(Win32Platform, CopyAttributesComeFromTheFileReplacedOrElseTheSource) {
    dir.write("src.dat", std::string(300000, 'q'));
    setAttributes("src.dat", FILE_ATTRIBUTE_READONLY);
    files.copyFile(dir.drive("src.dat"), dir.drive("new.dat"));
    DWORD copied = GetFileAttributesW(wide("new.dat").c_str());
    EXPECT_TRUE(copied & FILE_ATTRIBUTE_READONLY);
    EXPECT_FALSE(copied & FILE_ATTRIBUTE_HIDDEN);
    EXPECT_EQ(std::string(300000, 'q'), dir.read("new.dat"));

    dir.write("dst.dat", "old");
    setAttributes("dst.dat", FILE_ATTRIBUTE_ARCHIVE);
    files.copyFile(dir.drive("src.dat"), dir.drive("dst.dat"));
    EXPECT_FALSE(GetFileAttributesW(wide("dst.dat").c_str()) & FILE_ATTRIBUTE_READONLY);
    EXPECT_EQ(std::string(300000, 'q'), dir.read("dst.dat"));

    EXPECT_EQ(
        nvtest::failureOf([&] { files.copyFile(dir.drive("dst.dat"), dir.drive("new.dat")); }),
        nv::kFailAccessRefused);
    EXPECT_EQ(std::set<std::string>({"src.dat", "dst.dat", "new.dat"}), entries());
}

TEST(Win32Machine, SpecialFoldersAndTheProgramsFolder) {
    nv::Platform native = nv::nativePlatform();
    for (int csidl : {26, 28, 38}) {
        std::string folder = native.folders->folder(csidl);
        ASSERT_GE(folder.size(), 3u) << csidl;
        EXPECT_EQ(':', folder[1]) << folder;
        EXPECT_NE('\\', folder.back()) << folder;
        EXPECT_TRUE(fs::is_directory(nv::win32::widePath(folder))) << folder;
    }
    EXPECT_EQ("", native.folders->folder(0x7F));
    std::string app = native.process->appPath();
    EXPECT_NE("", native.files->firstMatch(app + "\\*.exe")) << app;
}

} // namespace
