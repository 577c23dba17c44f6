// The text model of a settings file in memory, and the same with its character set: what a
// lookup finds, and what a store leaves of the other bytes, for files as other tools and systems
// leave them. A store's own line is tried on the native store (profile_test); that every file
// renders back byte for byte and agrees with its answers is fuzzed (fuzz_settings).
#include "platform/ProfileDocument.h"
#include "platform/ProfileText.h"
#include "platform/Utf8.h"

#include <gtest/gtest.h>

#include <optional>
#include <tuple>

namespace {

using nv::ProfileCharset;
using nv::ProfileDocument;
using nv::ProfileText;

TEST(ProfileText, FindsValuesAsTheHomePlatformReadsThem) {
    // An editor's byte order mark does not belong to the first header's name.
    const ProfileText profile("\xEF\xBB\xBF[Basic settings]\r\nAantalFiles=9\r\nDirectory='1\r\n"
                              "geen sleutel\r\nAantalFiles=tweede\r\n[basic SETTINGS]\r\n"
                              "Extra=uit de tweede kop\r\n[Caf\xE9]\r\nCl\xE9=\xE9t\xE9\r\n"
                              "[a=b]\r\nLaatste=zonder regeleinde");
    const std::tuple<const char*, const char*, std::optional<std::string>> cases[] = {
        {"basic settings", "aantalfiles", "9"}, // the first of two equal keys counts
        {"Basic settings", "Directory", "'1"},  // quotes go in pairs only
        {"Basic settings", "geen sleutel", std::nullopt},
        {"Basic settings", "Extra", std::nullopt}, // the second header of a name is not read
        {"CAF\xC9", "CL\xC9", "\xE9t\xE9"},
        {"a=b", "Laatste", "zonder regeleinde"},
        {"Ontbreekt", "AantalFiles", std::nullopt},
    };
    for (const auto& [section, key, value] : cases)
        EXPECT_EQ(profile.find(section, key), value) << section << "/" << key;
}

const std::string kLodz = "\u0141\u00f3d\u017a";

std::string utf16(const std::string& utf8, bool bigEndian) {
    return (bigEndian ? "\xFE\xFF" : "\xFF\xFE") + nv::utf16FromUtf8(utf8, bigEndian);
}

// Each file holds AantalFiles=2 and a path with letters beyond ASCII; a store of AantalFiles
// keeps both, and the file's character set.
TEST(ProfileDocument, ReadsAndStoresInEveryLineEndAndCharacterSet) {
    const std::string path = "C:\\" + kLodz + "\\NV.ini";
    const std::string utf8 = "[Basic settings]\r\nAantalFiles=2\r\ndirfrom=" + path + "\r\n";
    const std::string cp1252 = "C:\\Donn\xE9s";
    const struct {
        const char* name;
        std::string bytes;
        ProfileCharset charset;
        std::string dirfrom;
    } files[] = {
        {"LF", "[Basic settings]\nAantalFiles=2\ndirfrom=" + cp1252, ProfileCharset::Cp1252,
         "C:\\Donn\u00e9s"},
        {"CR and CR LF", "[Basic settings]\rAantalFiles=2\r\ndirfrom=" + path, ProfileCharset::Utf8,
         path},
        {"UTF-16 LE", utf16(utf8, false), ProfileCharset::Utf16Le, path},
        {"UTF-16 BE", utf16(utf8, true), ProfileCharset::Utf16Be, path},
    };
    for (const auto& file : files) {
        SCOPED_TRACE(file.name);
        ProfileDocument doc(file.bytes);
        EXPECT_EQ(doc.charset(), file.charset);
        EXPECT_EQ(doc.find("BASIC SETTINGS", "DIRFROM"), file.dirfrom);
        EXPECT_TRUE(doc.set("Basic settings", "AantalFiles", "3"));
        ProfileDocument back(doc.render());
        EXPECT_EQ(back.charset(), file.charset);
        EXPECT_EQ(back.find("Basic settings", "AantalFiles"), "3");
        EXPECT_EQ(back.find("Basic settings", "dirfrom"), file.dirfrom);
    }
    // A store ends its own line in CR LF and leaves the others as they were.
    ProfileDocument doc("[Basic settings]\rAantalFiles=2\rDriveTarget=E:\r");
    EXPECT_TRUE(doc.set("Basic settings", "AantalFiles", "3"));
    EXPECT_TRUE(doc.set("Basic settings", "Directory", "0"));
    EXPECT_EQ(doc.render(), "[Basic settings]\rAantalFiles=3\r\nDriveTarget=E:\rDirectory=0\r\n");
}

TEST(ProfileDocument, KeepsEachFileInItsCharacterSetWhereItCan) {
    // A value the code page cannot hold turns a Windows file into UTF-8 rather than lose a
    // letter. (One it holds is written in it: tried through a start on such a file.)
    ProfileDocument windows("[Basic settings]\r\ndirfrom=C:\\Donn\xE9\x65s\\\r\n[Backupfiles]\r\n"
                            "BackUpfile1=C:\\Caf\xE9\\NV.ini\r\n");
    EXPECT_TRUE(windows.set("Backupfiles", "BackUpfile3", "C:\\" + kLodz + "\\NV.ini"));
    ProfileDocument again(windows.render());
    EXPECT_EQ(again.charset(), ProfileCharset::Utf8);
    EXPECT_EQ(again.find("Basic settings", "dirfrom"), "C:\\Donn\u00e9es\\");
    EXPECT_EQ(again.find("BACKUPFILES", "backupfile1"), "C:\\Caf\u00e9\\NV.ini");
    EXPECT_EQ(again.find("Backupfiles", "BackUpfile3"), "C:\\" + kLodz + "\\NV.ini");

    // In a UTF-8 file ó and Ó, d and D name one key, and a malformed byte in a value cannot
    // break the file's UTF-8.
    const std::string lodz = "[Basic settings]\r\n\u0141\u00f3dz=1\r\n";
    ProfileDocument utf(lodz);
    EXPECT_EQ(utf.find("Basic settings", "\u0141\u00d3DZ"), "1");
    EXPECT_TRUE(utf.set("Basic settings", "DriveTarget", "E\xFF:"));
    EXPECT_EQ(utf.render(), lodz + "DriveTarget=E?:\r\n");
    EXPECT_EQ(ProfileDocument(utf.render()).charset(), ProfileCharset::Utf8);
}

} // namespace
