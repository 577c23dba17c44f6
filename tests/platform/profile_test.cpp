// The profile-file services as the settings file meets them. The same tests run against the
// home platform's own services, so the expected bytes are what that platform writes.
#include "platform/Platform.h"
#include "support/TestMachine.h"

#include <gtest/gtest.h>

using nvtest::crlf;

namespace {

class Profile : public ::testing::Test {
protected:
    std::string get(const std::string& section, const std::string& key) {
        return store.getString(section, key, "?", 255, ini);
    }

    nv::ProfileStore& store = *nv::nativePlatform().profiles;
    nvtest::TempFolder dir;
    const std::string ini = dir.drive("NVbackuptool.ini");
};

TEST_F(Profile, ReadsValuesWithoutCaseBlanksOrQuotes) {
    dir.write("NVbackuptool.ini",
              crlf("[Basic settings]\nAantalFiles=9\ndirfrom= \t C:\\Data\\Norvale\\ \t\n"
                   "DriveTarget=\nLastBackup=  \"17-11-2026\"  \nDirectory='1'\n"
                   "[BACKUPFILES]\nbackupfile1=C:\\x.mdb\n"));
    EXPECT_EQ(get("basic SETTINGS", "aantalfiles"), "9");
    EXPECT_EQ(get("Basic settings", "dirfrom"), "C:\\Data\\Norvale\\");
    EXPECT_EQ(get("Basic settings", "DriveTarget"), ""); // present but empty: not the fallback
    EXPECT_EQ(get("Basic settings", "LastBackup"), "17-11-2026");
    EXPECT_EQ(get("Backupfiles", "BackUpfile1"), "C:\\x.mdb");
}

// The key keeps its letters, a new key goes to the end of its own section before the blank lines
// that close it, blank and empty values stay as they are, a new section goes to the end.
TEST_F(Profile, WritesInPlaceAndAppendsWhereTheHomePlatformDoes) {
    dir.write("NVbackuptool.ini", crlf("[Basic settings]\nAantalFiles=9\n; kept as it is\n\n"
                                       "[backupfiles]\nBACKUPFILE1=C:\\old.mdb\n"));
    EXPECT_TRUE(store.writeString("Backupfiles", "BackUpfile1", "C:\\new.mdb", ini));
    EXPECT_TRUE(store.writeString("BASIC SETTINGS", "DriveTarget", "E:", ini));
    EXPECT_TRUE(store.writeString("Backupfiles", "BackUpfile2", " ", ini));
    EXPECT_TRUE(store.writeString("Backupfiles", "BackUpfile3", "", ini));
    EXPECT_TRUE(store.writeString("Extra", "Key", "Value", ini));
    const bool wine = nvtest::runningUnderWine();
    EXPECT_EQ(dir.read("NVbackuptool.ini"),
              crlf("[Basic settings]\nAantalFiles=9\n; kept as it is\nDriveTarget=E:\n" +
                   std::string(wine ? "" : "\n") + "[backupfiles]\nBACKUPFILE1=C:\\new.mdb\n" +
                   (wine ? "BackUpfile2=\n" : "BackUpfile2= \n") +
                   "BackUpfile3=\n[Extra]\nKey=Value\n"));
    EXPECT_EQ(get("Backupfiles", "BackUpfile2"), "");
}

TEST_F(Profile, CreatesTheFileInTheSystemsCodePage) {
    const std::string folder = "C:\\Donn\u00e9es\\\u20ac\\\u4e2d";
    const std::string polish = "\u0141\u00f3d\u017a \u0107 \u0131 \u0100";
    EXPECT_TRUE(store.writeString("Basic settings", "dirfrom", folder, ini));
    EXPECT_TRUE(store.writeString("Basic settings", "DriveTarget", polish, ini));
#ifdef _WIN32
    // é and € have a byte of their own in the code page, a Chinese character has none, and
    // accented letters the code page lacks lose their accent.
    const std::string bytes = "C:\\Donn\xE9\x65s\\\x80\\?\r\nDriveTarget=L\xF3\x64z c i A";
    const std::string folderBack = "C:\\Donn\u00e9es\\\u20ac\\?", polishBack = "L\u00f3dz c i A";
#else
    // Linux names files in UTF-8, and so does its settings file: every letter survives.
    const std::string bytes = folder + "\r\nDriveTarget=" + polish;
    const std::string folderBack = folder, polishBack = polish;
#endif
    EXPECT_EQ(dir.read("NVbackuptool.ini"), "[Basic settings]\r\ndirfrom=" + bytes + "\r\n");
    EXPECT_EQ(get("Basic settings", "dirfrom"), folderBack);
    EXPECT_EQ(get("Basic settings", "DriveTarget"), polishBack);
}

} // namespace
