// The text model of a profile file, in memory: what a lookup finds and what a store leaves.

#include "platform/ProfileText.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace {

using nv::ProfileText;

TEST(ProfileText, FindsValuesAsTheHomePlatformReadsThem) {
    const std::string text = "Los=boven de eerste kop\r\n"
                             "[Basic settings]\r\n"
                             "AantalFiles=9\r\n"
                             "  dirfrom = \t C:\\Data\\ \t\r\n"
                             "LastBackup=\"17-11-2026\"\n"
                             "Directory='1\r\n"
                             "geen sleutel\r\n"
                             "AantalFiles=tweede\r\n"
                             "[basic SETTINGS]\r\n"
                             "Extra=uit de tweede kop\r\n"
                             "[Donn\xE9"
                             "es]\r\n"
                             "Cl\xE9=\xE9t\xE9\r\n"
                             "[a=b]\r\n"
                             "Laatste=zonder regeleinde";
    ProfileText profile(text);
    struct Case {
        const char* section;
        const char* key;
        std::optional<std::string> value;
    } cases[] = {
        {"basic settings", "aantalfiles", "9"}, // the first of two equal keys counts
        {"Basic settings", "DIRFROM", "C:\\Data\\"},
        {"Basic settings", "LastBackup", "17-11-2026"},
        {"Basic settings", "Directory", "'1"}, // quotes go in pairs only
        {"Basic settings", "geen sleutel", std::nullopt},
        {"Basic settings", "Extra", std::nullopt}, // the second header of a name is not read
        {"", "Los", std::nullopt},                 // above the first header
        {"DONN\xC9"
         "ES",
         "CL\xC9", "\xE9t\xE9"},
        {"a=b", "Laatste", "zonder regeleinde"},
        {"Ontbreekt", "AantalFiles", std::nullopt},
    };
    for (const Case& c : cases)
        EXPECT_EQ(profile.find(c.section, c.key), c.value) << c.section << "/" << c.key;
    EXPECT_EQ(profile.render(), text);

    ProfileText withNul(std::string("[S]\r\nNul=voor\0na\r\n", 19));
    EXPECT_EQ(withNul.find("S", "Nul"), "voor");
    // An editor's byte order mark does not belong to the first header's name.
    ProfileText marked("\xEF\xBB\xBF[Basic settings]\nAantalFiles=3\n");
    EXPECT_EQ(marked.find("Basic settings", "AantalFiles"), "3");
}

TEST(ProfileText, StoresChangeOnlyTheirOwnLine) {
    struct Case {
        const char* name;
        std::string before;
        const char* section;
        const char* key;
        std::string value;
        std::string after;
        bool changed;
    } cases[] = {
        {"in place, the key keeps its letters", "[S]\nAANTAL = 1\nB=2\n", "s", "aantal", "7",
         "[S]\nAANTAL =7\r\nB=2\n", true},
        {"the same value again", "[S]\r\nA=1\r\n", "S", "A", "1", "[S]\r\nA=1\r\n", false},
        {"the same value, another line end", "[S]\r\nA=1\n", "S", "A", "1", "[S]\r\nA=1\r\n", true},
        {"a new key under a bare header", "[S]", "S", "A", "1", "[S]\r\nA=1\r\n", true},
        {"a new section after a last line without end", "[S]\r\nA=1", "T", "B", "",
         "[S]\r\nA=1\r\n[T]\r\nB=\r\n", true},
        {"a value that breaks its line", "[S]\r\nA=1\r\n", "S", "A", "x\r\n[T]",
         "[S]\r\nA=x\r\n[T]\r\n", true},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        ProfileText profile(c.before);
        EXPECT_EQ(profile.set(c.section, c.key, c.value), c.changed);
        EXPECT_EQ(profile.render(), c.after);
        // What the model answers after a store is what the text it renders says.
        ProfileText reread(profile.render());
        for (const char* section : {c.section, "T"})
            EXPECT_EQ(profile.find(section, c.key), reread.find(section, c.key)) << section;
    }
    // A key line with a header's shape is a header from then on, for the next store too.
    ProfileText odd("[S]\r\n");
    odd.set("S", "[x", "y]");
    EXPECT_EQ(odd.find("S", "[x"), std::nullopt);
    odd.set("X=Y", "k", "v");
    EXPECT_EQ(odd.render(), "[S]\r\n[x=y]\r\nk=v\r\n");
}

} // namespace
