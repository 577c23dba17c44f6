// The profile-file services as the settings file meets them. The same tests run against the
// home platform's own services, so the expected bytes are what that platform writes.

#include "platform/Platform.h"
#include "support/TempFolder.h"
#include "support/TestMachine.h"

#include <gtest/gtest.h>

#include <string>

namespace {

class Profile : public ::testing::Test {
protected:
    nv::ProfileStore& store = *nv::nativePlatform().profiles;
    nvtest::TempFolder dir;
    std::string ini = dir.drive("NVbackuptool.ini");

    std::string get(const std::string& section, const std::string& key, const std::string& file) {
        return store.getString(section, key, "?", 255, file);
    }
    std::string get(const std::string& section, const std::string& key) {
        return get(section, key, ini);
    }
};

TEST_F(Profile, ReadsValuesWithoutCaseBlanksOrQuotes) {
    dir.write("NVbackuptool.ini", "[Basic settings]\r\n"
                                  "AantalFiles=9\r\n"
                                  "dirfrom= \t C:\\Data\\Norvale\\ \t\r\n"
                                  "DriveTarget=\r\n"
                                  "LastBackup=  \"17-11-2026\"  \r\n"
                                  "Directory='1'\r\n"
                                  "Marker=?\r\n"
                                  "Asked=?no\r\n"
                                  "[BACKUPFILES]\r\n"
                                  "backupfile1=C:\\x.mdb\r\n");
    EXPECT_EQ(get("basic SETTINGS", "aantalfiles"), "9");
    EXPECT_EQ(get("Basic settings", "dirfrom"), "C:\\Data\\Norvale\\");
    EXPECT_EQ(get("Basic settings", "DriveTarget"), ""); // present but empty: not the fallback
    EXPECT_EQ(get("Basic settings", "LastBackup"), "17-11-2026");
    EXPECT_EQ(get("Basic settings", "Directory"), "1");
    EXPECT_EQ(get("Basic settings", "Marker"), "?");
    EXPECT_EQ(get("Basic settings", "Asked"), "?no");
    // The 254 characters a read holds are tried through the settings reads.
    EXPECT_EQ(get("Backupfiles", "BackUpfile1"), "C:\\x.mdb");

    EXPECT_EQ(get("Basic settings", "Missing"), "?");
    EXPECT_EQ(get("No such section", "AantalFiles"), "?");
    EXPECT_EQ(get("Basic settings", "AantalFiles", dir.drive("Nowhere.ini")), "?");
    EXPECT_FALSE(dir.exists("Nowhere.ini"));

    // A file written elsewhere with bare LF line ends.
    dir.write("lf.ini", "[Backupfiles]\nBackUpfile1=C:\\a.mdb\nBackUpfile2=C:\\b.mdb\n");
    EXPECT_EQ(get("Backupfiles", "BackUpfile2", dir.drive("lf.ini")), "C:\\b.mdb");
}

TEST_F(Profile, WritesInPlaceAndAppendsWhereTheHomePlatformDoes) {
    dir.write("NVbackuptool.ini", "[Basic settings]\r\n"
                                  "AantalFiles=9\r\n"
                                  "; kept as it is\r\n"
                                  "\r\n"
                                  "[backupfiles]\r\n"
                                  "BACKUPFILE1=C:\\old.mdb\r\n");
    // The key keeps its letters, a new key goes to the end of its own section before the blank
    // lines that close it, blank and empty values stay as they are, a new section goes to the
    // end of the file.
    EXPECT_TRUE(store.writeString("Backupfiles", "BackUpfile1", "C:\\new.mdb", ini));
    EXPECT_TRUE(store.writeString("BASIC SETTINGS", "DriveTarget", "E:", ini));
    EXPECT_TRUE(store.writeString("Backupfiles", "BackUpfile2", " ", ini));
    EXPECT_TRUE(store.writeString("Backupfiles", "BackUpfile3", "", ini));
    EXPECT_TRUE(store.writeString("Extra", "Key", "Value", ini));
    const bool wine = nvtest::runningUnderWine();
    EXPECT_EQ(dir.read("NVbackuptool.ini"), std::string("[Basic settings]\r\n"
                                                        "AantalFiles=9\r\n"
                                                        "; kept as it is\r\n"
                                                        "DriveTarget=E:\r\n") +
                                                (wine ? "" : "\r\n") +
                                                "[backupfiles]\r\n"
                                                "BACKUPFILE1=C:\\new.mdb\r\n" +
                                                (wine ? "BackUpfile2=\r\n" : "BackUpfile2= \r\n") +
                                                "BackUpfile3=\r\n"
                                                "[Extra]\r\n"
                                                "Key=Value\r\n");
    EXPECT_EQ(get("Backupfiles", "BackUpfile2"), "");
    EXPECT_EQ(get("Backupfiles", "BackUpfile3"), "");
    EXPECT_EQ(get("backupfiles", "backupfile1"), "C:\\new.mdb");
}

TEST_F(Profile, CreatesTheFileInTheSystemsCodePage) {
    EXPECT_TRUE(store.writeString("Basic settings", "AantalFiles", "0", ini));

    const std::string folder = "C:\\Donn\xC3\xA9"
                               "es\\\xE2\x82\xAC\\\xE4\xB8\xAD";
    const std::string polish = "\xC5\x81\xC3\xB3"
                               "d\xC5\xBA \xC4\x87 \xC4\xB1 \xC4\x80";
    EXPECT_TRUE(store.writeString("Basic settings", "dirfrom", folder, ini));
    EXPECT_TRUE(store.writeString("Basic settings", "DriveTarget", polish, ini));
#ifdef _WIN32
    // é and € have a byte of their own in the code page, a Chinese character has none, and
    // accented letters the code page lacks lose their accent.
    EXPECT_EQ(dir.read("NVbackuptool.ini"),
              "[Basic settings]\r\nAantalFiles=0\r\ndirfrom=C:\\Donn\xE9"
              "es\\\x80\\?\r\nDriveTarget=L\xF3"
              "dz c i A\r\n");
    EXPECT_EQ(get("Basic settings", "dirfrom"), "C:\\Donn\xC3\xA9"
                                                "es\\\xE2\x82\xAC\\?");
    EXPECT_EQ(get("Basic settings", "DriveTarget"), "L\xC3\xB3"
                                                    "dz c i A");
#else
    // Linux names files in UTF-8, and so does its settings file: every letter survives.
    EXPECT_EQ(dir.read("NVbackuptool.ini"), "[Basic settings]\r\nAantalFiles=0\r\ndirfrom=" +
                                                folder + "\r\nDriveTarget=" + polish + "\r\n");
    EXPECT_EQ(get("Basic settings", "dirfrom"), folder);
    EXPECT_EQ(get("Basic settings", "DriveTarget"), polish);
#endif

    // No folder to put it in: the store fails and nothing is there afterwards.
    std::string lost = dir.drive("Missing\\NVbackuptool.ini");
    EXPECT_FALSE(store.writeString("Basic settings", "AantalFiles", "0", lost));
    EXPECT_EQ(get("Basic settings", "AantalFiles", lost), "?");
    EXPECT_FALSE(dir.exists("Missing"));
}

} // namespace
