// The text model of a settings file in memory, and the same with its character set: what a
// lookup finds, and what a store leaves of the other bytes, for files as other tools and systems
// leave them. That every file renders back byte for byte, keeps its character set and agrees with
// its answers is fuzzed (fuzz_settings).
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
                              "Extra=uit de tweede kop\r\n[Caf\xE9]\r\nCl\xE9=\xE9t\xE9\r\n" +
                              std::string("Nul=voor\0na\r\n", 13) +
                              "[a=b]\r\nLaatste=zonder regeleinde");
    const std::tuple<const char*, const char*, std::optional<std::string>> cases[] = {
        {"basic settings", "aantalfiles", "9"}, // the first of two equal keys counts
        {"Basic settings", "Directory", "'1"},  // quotes go in pairs only
        {"Basic settings", "geen sleutel", std::nullopt},
        {"Basic settings", "Extra", std::nullopt}, // the second header of a name is not read
        {"CAF\xC9", "CL\xC9", "\xE9t\xE9"},
        {"Caf\xE9", "Nul", "voor"},
        {"a=b", "Laatste", "zonder regeleinde"},
        {"Ontbreekt", "AantalFiles", std::nullopt},
    };
    for (const auto& [section, key, value] : cases)
        EXPECT_EQ(profile.find(section, key), value) << section << "/" << key;
}

TEST(ProfileText, StoresChangeOnlyTheirOwnLine) {
    const std::tuple<const char*, std::string, const char*, const char*, std::string, std::string>
        cases[] = {
            {"in place, the key keeps its letters", "[S]\nAANTAL = 1\nB=2\n", "s", "aantal", "7",
             "[S]\nAANTAL =7\r\nB=2\n"},
            {"the same value again", "[S]\r\nA=1\r\n", "S", "A", "1", "[S]\r\nA=1\r\n"},
            {"the same value, another line end", "[S]\r\nA=1\n", "S", "A", "1", "[S]\r\nA=1\r\n"},
            {"a new key under a bare header", "[S]", "S", "A", "1", "[S]\r\nA=1\r\n"},
            {"a new section after a last line without end", "[S]\r\nA=1", "T", "B", "",
             "[S]\r\nA=1\r\n[T]\r\nB=\r\n"},
            {"a value that breaks its line", "[S]\r\nA=1\r\n", "S", "A", "x\r\n[T]",
             "[S]\r\nA=x\r\n[T]\r\n"},
            {"a key with a header's shape", "[S]\r\n", "S", "[x", "y]", "[S]\r\n[x=y]\r\n"},
        };
    for (const auto& [name, before, section, key, value, after] : cases) {
        ProfileText profile(before);
        profile.set(section, key, value);
        EXPECT_EQ(profile.render(), after) << name;
    }
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
        {"lone CR", "[Basic settings]\rAantalFiles=2\rdirfrom=" + cp1252 + "\r",
         ProfileCharset::Cp1252, "C:\\Donn\u00e9s"},
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

    // A store over the one line that was no UTF-8 must not change what the other lines say.
    ProfileDocument mixed("[S]\r\nA=\xC3\xA9\r\nB=\xFF\r\n");
    EXPECT_EQ(mixed.find("S", "A"), "\u00c3\u00a9");
    EXPECT_TRUE(mixed.set("S", "B", "x"));
    EXPECT_EQ(ProfileDocument(mixed.render()).find("S", "A"), "\u00c3\u00a9");

    // In a UTF-8 file ó and Ó, d and D name one key, and a malformed byte in a value cannot
    // break the file's UTF-8.
    const std::string lodz = "[Basic settings]\r\n\u0141\u00f3dz=1\r\n";
    ProfileDocument utf(lodz);
    EXPECT_EQ(utf.find("Basic settings", "\u0141\u00d3DZ"), "1");
    EXPECT_TRUE(utf.set("Basic settings", "DriveTarget", "E\xFF:"));
    EXPECT_EQ(utf.render(), lodz + "DriveTarget=E?:\r\n");
    EXPECT_EQ(ProfileDocument(utf.render()).charset(), ProfileCharset::Utf8);
    // A UTF-16 file keeps what a UTF-16 reader would not: a lone surrogate and an odd last byte.
    const std::string odd = utf16("[S]\r\nK=v\r\n", false) + std::string("\x00\xD8x", 3);
    EXPECT_EQ(ProfileDocument(odd).render(), odd);
}

} // namespace
