// A settings file as other tools and other systems leave it: line ends of every kind, and the
// character sets it may come in. What is read, and what a store leaves of the other bytes.

#include "platform/ProfileDocument.h"
#include "platform/Utf8.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <utility>

namespace {

using nv::ProfileCharset;
using nv::ProfileDocument;

const std::string kE = "\xC3\xA9"; // é in UTF-8
const std::string kLodz = "\xC5\x81\xC3\xB3"
                          "d\xC5\xBA"; // Łódź

std::string utf16le(const std::string& utf8) {
    return "\xFF\xFE" + nv::utf16FromUtf8(utf8, false);
}

TEST(ProfileDocument, ReadsLinesEndedByCrLfOrCr) {
    // Old-style tools end lines with a lone CR; each line still holds its own key.
    const std::string kinds[] = {
        "[Basic settings]\r\nAantalFiles=2\r\nDriveTarget=E:\r\n",
        "[Basic settings]\nAantalFiles=2\nDriveTarget=E:\n",
        "[Basic settings]\rAantalFiles=2\rDriveTarget=E:\r",
        "[Basic settings]\rAantalFiles=2\r\nDriveTarget=E:",
    };
    for (const std::string& text : kinds) {
        ProfileDocument doc(text);
        EXPECT_EQ(doc.find("Basic settings", "AantalFiles"), "2") << text;
        EXPECT_EQ(doc.find("Basic settings", "DriveTarget"), "E:") << text;
        EXPECT_EQ(doc.render(), text);
    }
    // A store ends its own line in CR LF and leaves the others as they were.
    ProfileDocument doc("[Basic settings]\rAantalFiles=2\rDriveTarget=E:\r");
    EXPECT_TRUE(doc.set("Basic settings", "AantalFiles", "3"));
    EXPECT_TRUE(doc.set("Basic settings", "Directory", "0"));
    EXPECT_EQ(doc.render(), "[Basic settings]\rAantalFiles=3\r\nDriveTarget=E:\rDirectory=0\r\n");
}

TEST(ProfileDocument, KeepsAWindowsFileInItsCodePageWhereItCan) {
    const std::string windows = "[Basic settings]\r\ndirfrom=C:\\Donn\xE9"
                                "es\\\r\n[Backupfiles]\r\nBackUpfile1=C:\\Caf\xE9\\NV.ini\r\n";
    ProfileDocument doc(windows);
    EXPECT_EQ(doc.charset(), ProfileCharset::Cp1252);
    EXPECT_EQ(doc.find("Basic settings", "dirfrom"), "C:\\Donn" + kE + "es\\");
    EXPECT_EQ(doc.find("BACKUPFILES", "backupfile1"), "C:\\Caf" + kE + "\\NV.ini");

    // A value the code page holds is written in it, and every other byte stays.
    EXPECT_TRUE(doc.set("Backupfiles", "BackUpfile2", "D:\\R" + kE + "sum" + kE + ".doc"));
    EXPECT_EQ(doc.render(), windows + "BackUpfile2=D:\\R\xE9sum\xE9.doc\r\n");

    // One it cannot hold turns the file into UTF-8 rather than lose a letter.
    EXPECT_TRUE(doc.set("Backupfiles", "BackUpfile3", "C:\\" + kLodz + "\\NV.ini"));
    EXPECT_EQ(doc.charset(), ProfileCharset::Utf8);
    ProfileDocument again(doc.render());
    EXPECT_EQ(again.charset(), ProfileCharset::Utf8);
    EXPECT_EQ(again.find("Basic settings", "dirfrom"), "C:\\Donn" + kE + "es\\");
    EXPECT_EQ(again.find("Backupfiles", "BackUpfile3"), "C:\\" + kLodz + "\\NV.ini");

    // A store over the one line that was no UTF-8 must not change what the other lines say.
    ProfileDocument mixed("[S]\r\nA=\xC3\xA9\r\nB=\xFF\r\n");
    EXPECT_EQ(mixed.find("S", "A"), "\xC3\x83\xC2\xA9");
    EXPECT_TRUE(mixed.set("S", "B", "x"));
    EXPECT_EQ(ProfileDocument(mixed.render()).find("S", "A"), "\xC3\x83\xC2\xA9");
}

TEST(ProfileDocument, KeepsAUtf8FileInUtf8WithNamesOfAnyCase) {
    const std::string text =
        "[Basic settings]\r\ndirfrom=C:\\" + kLodz + "\\\r\n" + "\xC5\x81\xC3\xB3" + "dz=1\r\n";
    ProfileDocument doc(text);
    EXPECT_EQ(doc.charset(), ProfileCharset::Utf8);
    EXPECT_EQ(doc.find("Basic settings", "dirfrom"), "C:\\" + kLodz + "\\");
    // ó and Ó, d and D name one key.
    EXPECT_EQ(doc.find("Basic settings", "\xC5\x81\xC3\x93"
                                         "DZ"),
              "1");
    // A malformed byte in a value cannot break the file's UTF-8.
    EXPECT_TRUE(doc.set("Basic settings", "DriveTarget", "E\xFF:"));
    EXPECT_EQ(doc.render(), text + "DriveTarget=E?:\r\n");
    EXPECT_EQ(ProfileDocument(doc.render()).charset(), ProfileCharset::Utf8);
}

TEST(ProfileDocument, ReadsAndWritesAUtf16FileInUtf16) {
    const std::string lines = "\xEF\xBB\xBF[Basic settings]\r\nAantalFiles=1\r\n"
                              "[Backupfiles]\r\nBackUpfile1=C:\\" +
                              kLodz + "\\NV.ini\r\n";
    const std::string little = utf16le(lines.substr(3));
    const std::string big = "\xFE\xFF" + nv::utf16FromUtf8(lines.substr(3), true);
    const std::pair<std::string, ProfileCharset> files[] = {{little, ProfileCharset::Utf16Le},
                                                            {big, ProfileCharset::Utf16Be}};
    for (const auto& [bytes, charset] : files) {
        ProfileDocument doc(bytes);
        EXPECT_EQ(doc.charset(), charset);
        EXPECT_EQ(doc.find("Basic settings", "AantalFiles"), "1");
        EXPECT_EQ(doc.find("Backupfiles", "BackUpfile1"), "C:\\" + kLodz + "\\NV.ini");
        EXPECT_EQ(doc.render(), bytes);
        EXPECT_TRUE(doc.set("Basic settings", "AantalFiles", "2"));
        ProfileDocument back(doc.render());
        EXPECT_EQ(back.charset(), doc.charset());
        EXPECT_EQ(back.find("Basic settings", "AantalFiles"), "2");
        EXPECT_EQ(back.find("Backupfiles", "BackUpfile1"), "C:\\" + kLodz + "\\NV.ini");
    }
    // The file keeps what a UTF-16 reader would not: a lone surrogate and an odd last byte.
    const std::string odd = utf16le("[S]\r\nK=v\r\n") + std::string("\x00\xD8x", 3);
    EXPECT_EQ(ProfileDocument(odd).render(), odd);
}

} // namespace
