#include "platform/FailureText.h"
#include "platform/Platform.h"
#include "platform/win32/Win32Text.h"
#include "support/TempFolder.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <functional>
#include <set>

namespace {

using nvtest::TempFolder;

int32_t failureOf(const std::function<void()>& operation) {
    try {
        operation();
    } catch (const nv::FileFailure& failure) {
        EXPECT_FALSE(failure.Description.empty());
        return failure.Number;
    }
    return 0;
}

std::set<std::string> entriesOf(const TempFolder& folder, const std::string& relative = "") {
    std::set<std::string> names;
    std::wstring spec = nv::win32::widePath(relative.empty() ? folder.drive() + "\\*"
                                                             : folder.drive(relative) + "\\*");
    WIN32_FIND_DATAW data;
    HANDLE find = FindFirstFileW(spec.c_str(), &data);
    if (find == INVALID_HANDLE_VALUE)
        return names;
    do {
        std::string name = nv::win32::utf8FromWide(data.cFileName);
        if (name != "." && name != "..")
            names.insert(name);
    } while (FindNextFileW(find, &data));
    FindClose(find);
    return names;
}

void setAttributes(const TempFolder& folder, const std::string& relative, DWORD attributes) {
    ASSERT_TRUE(
        SetFileAttributesW(nv::win32::widePath(folder.drive(relative)).c_str(), attributes));
}

char missingDriveLetter() {
    DWORD present = GetLogicalDrives();
    for (int i = 25; i >= 3; --i)
        if (!(present & (1u << i)))
            return static_cast<char>('A' + i);
    return 0;
}

class Win32Platform : public ::testing::Test {
protected:
    nv::Platform native = nv::nativePlatform();
    nv::FileSystem& files = *native.files;
    TempFolder dir;
};

TEST_F(Win32Platform, RealFailuresCarryTheirNumbers) {
    dir.write("file.txt", "x");
    dir.write("other.txt", "y");
    ASSERT_TRUE(CreateDirectoryW(nv::win32::widePath(dir.drive("folder")).c_str(), nullptr));

    EXPECT_EQ(76, failureOf([&] { files.moveFile(dir.drive("none.txt"), dir.drive("n.txt")); }));
    EXPECT_EQ(76, failureOf([&] { files.deleteFile(dir.drive("none.txt")); }));
    EXPECT_EQ(76, failureOf([&] { files.makeFolder(dir.drive("no\\sub")); }));
    EXPECT_EQ(76, failureOf([&] { files.makeFolder(dir.drive("file.txt\\sub")); }));
    EXPECT_EQ(76, failureOf([&] { files.copyFile(dir.drive("file.txt"), dir.drive("no\\c")); }));
    EXPECT_EQ(76, failureOf([&] { files.deleteByPattern(dir.drive("*.none")); }));
    EXPECT_EQ(76, failureOf([&] { files.removeFolder(dir.drive("nofolder")); }));

    EXPECT_EQ(75, failureOf([&] { files.makeFolder(dir.drive("folder")); }));
    EXPECT_EQ(75, failureOf([&] { files.makeFolder(dir.drive("file.txt")); }));
    EXPECT_EQ(75,
              failureOf([&] { files.moveFile(dir.drive("file.txt"), dir.drive("other.txt")); }));
    EXPECT_EQ("x", dir.read("file.txt"));
    EXPECT_EQ("y", dir.read("other.txt"));

    EXPECT_EQ(52, failureOf([&] { files.copyFile(dir.drive("file.txt"), ""); }));

    char letter = missingDriveLetter();
    ASSERT_NE(0, letter);
    std::string gone = std::string(1, letter) + ":\\Backup";
    EXPECT_EQ(68, failureOf([&] { files.firstMatch(gone + "\\*.*"); }));
    EXPECT_EQ(68, failureOf([&] { files.makeFolder(gone); }));
    EXPECT_FALSE(native.drives->ready(letter));
    EXPECT_TRUE(native.drives->ready('C'));

    EXPECT_EQ(std::set<std::string>({"file.txt", "other.txt", "folder"}), entriesOf(dir));
}

TEST_F(Win32Platform, FileHeldOpenWithoutSharingIsRefused) {
    dir.write("held.txt", "held");
    dir.write("src.txt", "new");
    HANDLE held = CreateFileW(nv::win32::widePath(dir.drive("held.txt")).c_str(), GENERIC_READ, 0,
                              nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    ASSERT_NE(INVALID_HANDLE_VALUE, held);

    EXPECT_EQ(75, failureOf([&] { files.deleteFile(dir.drive("held.txt")); }));
    EXPECT_EQ(75, failureOf([&] { files.copyFile(dir.drive("held.txt"), dir.drive("c.txt")); }));
    EXPECT_EQ(75, failureOf([&] { files.copyFile(dir.drive("src.txt"), dir.drive("held.txt")); }));
    CloseHandle(held);

    EXPECT_EQ("held", dir.read("held.txt"));
    // A refused copy takes its temporary file away with it.
    EXPECT_EQ(std::set<std::string>({"held.txt", "src.txt"}), entriesOf(dir));
}

TEST_F(Win32Platform, OnlyPlainFilesMatch) {
    dir.write("box/a.txt/inner", "");
    dir.write("box/b.txt", "hidden");
    dir.write("box/c.txt", "system");
    dir.write("box/Plain.TXT", "plain");
    dir.write("box/sub/deep.txt", "deep");
    dir.write("folders/only/x.txt", "");
    setAttributes(dir, "box/b.txt", FILE_ATTRIBUTE_HIDDEN);
    setAttributes(dir, "box/c.txt", FILE_ATTRIBUTE_SYSTEM);
    setAttributes(dir, "box/Plain.TXT", FILE_ATTRIBUTE_READONLY);

    EXPECT_EQ("Plain.TXT", files.firstMatch(dir.drive("box\\*.txt")));
    EXPECT_EQ("Plain.TXT", files.firstMatch(dir.drive("box\\plain.txt")));
    EXPECT_EQ("", files.firstMatch(dir.drive("box\\b.txt")));
    EXPECT_EQ("", files.firstMatch(dir.drive("box\\a.txt")));
    EXPECT_EQ("", files.firstMatch(dir.drive("box")));
    dir.write("names/b.txtx", "");
    dir.write("names/d.e", "");
    EXPECT_EQ("", files.firstMatch(dir.drive("names\\*.txt")));
    EXPECT_EQ("", files.firstMatch(dir.drive("names\\*.")));
    EXPECT_EQ("", files.firstMatch(dir.drive("folders\\*.*")));
    EXPECT_EQ("", files.firstMatch(dir.drive("missing\\*.*")));
    EXPECT_EQ("", files.firstMatch(dir.drive("box\\Plain.TXT\\*.*")));
    EXPECT_EQ("", files.firstMatch(dir.drive("box\\Plain.TXT\\sub")));

    setAttributes(dir, "box/Plain.TXT", FILE_ATTRIBUTE_NORMAL);
    files.deleteByPattern(dir.drive("box\\*.*"));
    EXPECT_EQ(std::set<std::string>({"a.txt", "b.txt", "c.txt", "sub"}), entriesOf(dir, "box"));
    EXPECT_EQ(76, failureOf([&] { files.deleteByPattern(dir.drive("box\\*.*")); }));
    EXPECT_EQ(75, failureOf([&] { files.removeFolder(dir.drive("box")); }));
}

TEST_F(Win32Platform, CopyKeepsTimeAndAttributesAndLeavesNoTemporaryFile) {
    dir.write("src.dat", std::string(300000, 'q'));
    dir.write("dst.dat", "old");
    std::wstring source = nv::win32::widePath(dir.drive("src.dat"));
    FILETIME old{};
    SYSTEMTIME stamp{2001, 2, 0, 3, 4, 5, 6, 0};
    ASSERT_TRUE(SystemTimeToFileTime(&stamp, &old));
    HANDLE h = CreateFileW(source.c_str(), FILE_WRITE_ATTRIBUTES, 0, nullptr, OPEN_EXISTING,
                           FILE_ATTRIBUTE_NORMAL, nullptr);
    ASSERT_NE(INVALID_HANDLE_VALUE, h);
    ASSERT_TRUE(SetFileTime(h, nullptr, nullptr, &old));
    CloseHandle(h);
    setAttributes(dir, "src.dat", FILE_ATTRIBUTE_READONLY);

    files.copyFile(dir.drive("src.dat"), dir.drive("dst.dat"));

    EXPECT_EQ(std::string(300000, 'q'), dir.read("dst.dat"));
    WIN32_FILE_ATTRIBUTE_DATA copied{};
    ASSERT_TRUE(GetFileAttributesExW(nv::win32::widePath(dir.drive("dst.dat")).c_str(),
                                     GetFileExInfoStandard, &copied));
    EXPECT_EQ(0, CompareFileTime(&old, &copied.ftLastWriteTime));
    EXPECT_TRUE(copied.dwFileAttributes & FILE_ATTRIBUTE_READONLY);
    EXPECT_FALSE(copied.dwFileAttributes & FILE_ATTRIBUTE_HIDDEN);
    EXPECT_EQ(std::set<std::string>({"src.dat", "dst.dat"}), entriesOf(dir));
}

TEST(Win32Machine, SpecialFoldersAndProcess) {
    nv::Platform native = nv::nativePlatform();
    for (int csidl : {26, 28, 38}) {
        std::string folder = native.folders->folder(csidl);
        ASSERT_GE(folder.size(), 3u) << csidl;
        EXPECT_EQ(':', folder[1]) << folder;
        EXPECT_NE('\\', folder.back()) << folder;
        DWORD attributes = GetFileAttributesW(nv::win32::widePath(folder).c_str());
        EXPECT_TRUE(attributes != INVALID_FILE_ATTRIBUTES &&
                    (attributes & FILE_ATTRIBUTE_DIRECTORY))
            << folder;
    }
    EXPECT_EQ("", native.folders->folder(0x7F));

    std::string app = native.process->appPath();
    EXPECT_NE("", native.files->firstMatch(app + "\\*.exe")) << app;
}

} // namespace
