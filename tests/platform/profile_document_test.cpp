// A settings file as other tools and other systems leave it: line ends of every kind, and the
// character sets it may come in. What is read, and what a store leaves of the other bytes.
// That every file renders back byte for byte and keeps its character set is fuzzed.
#include "platform/ProfileDocument.h"
#include "platform/Utf8.h"

#include <gtest/gtest.h>

namespace {

using nv::ProfileCharset;
using nv::ProfileDocument;

const std::string kE = "\xC3\xA9"; // é in UTF-8
const std::string kLodz = "\xC5\x81\xC3\xB3"
                          "d\xC5\xBA"; // Łódź

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
         "C:\\Donn" + kE + "s"},
        {"lone CR", "[Basic settings]\rAantalFiles=2\rdirfrom=" + cp1252 + "\r",
         ProfileCharset::Cp1252, "C:\\Donn" + kE + "s"},
        {"CR and CR LF", "[Basic settings]\rAantalFiles=2\r\ndirfrom=" + path, ProfileCharset::Utf8,
         path},
        {"UTF-16 LE", utf16(utf8, false), ProfileCharset::Utf16Le, path},
        {"UTF-16 BE", utf16(utf8, true), ProfileCharset::Utf16Be, path},
    };
    for (const auto& file : files) {
        SCOPED_TRACE(file.name);
        ProfileDocument doc(file.bytes);
        EXPECT_EQ(doc.charset(), file.charset);
        EXPECT_EQ(doc.find("Basic settings", "AantalFiles"), "2");
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
    ProfileDocument windows("[Basic settings]\r\ndirfrom=C:\\Donn\xE9"
                            "es\\\r\n[Backupfiles]\r\nBackUpfile1=C:\\Caf\xE9\\NV.ini\r\n");
    EXPECT_TRUE(windows.set("Backupfiles", "BackUpfile3", "C:\\" + kLodz + "\\NV.ini"));
    ProfileDocument again(windows.render());
    EXPECT_EQ(again.charset(), ProfileCharset::Utf8);
    EXPECT_EQ(again.find("Basic settings", "dirfrom"), "C:\\Donn" + kE + "es\\");
    EXPECT_EQ(again.find("BACKUPFILES", "backupfile1"), "C:\\Caf" + kE + "\\NV.ini");
    EXPECT_EQ(again.find("Backupfiles", "BackUpfile3"), "C:\\" + kLodz + "\\NV.ini");

    // A store over the one line that was no UTF-8 must not change what the other lines say.
    ProfileDocument mixed("[S]\r\nA=\xC3\xA9\r\nB=\xFF\r\n");
    EXPECT_EQ(mixed.find("S", "A"), "\xC3\x83\xC2\xA9");
    EXPECT_TRUE(mixed.set("S", "B", "x"));
    EXPECT_EQ(ProfileDocument(mixed.render()).find("S", "A"), "\xC3\x83\xC2\xA9");

    // In a UTF-8 file ó and Ó, d and D name one key, and a malformed byte in a value cannot
    // break the file's UTF-8.
    const std::string lodz = "[Basic settings]\r\n\xC5\x81\xC3\xB3"
                             "dz=1\r\n";
    ProfileDocument utf(lodz);
    EXPECT_EQ(utf.find("Basic settings", "\xC5\x81\xC3\x93"
                                         "DZ"),
              "1");
    EXPECT_TRUE(utf.set("Basic settings", "DriveTarget", "E\xFF:"));
    EXPECT_EQ(utf.render(), lodz + "DriveTarget=E?:\r\n");
    EXPECT_EQ(ProfileDocument(utf.render()).charset(), ProfileCharset::Utf8);
    // A UTF-16 file keeps what a UTF-16 reader would not: a lone surrogate and an odd last byte.
    const std::string odd = utf16("[S]\r\nK=v\r\n", false) + std::string("\x00\xD8x", 3);
    EXPECT_EQ(ProfileDocument(odd).render(), odd);
}

} // namespace
