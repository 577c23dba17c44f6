// The text model of a profile file, in memory: what a lookup finds and the bytes a store leaves.
// That its answers agree with the text it renders is fuzzed (fuzz_settings).

#include "platform/ProfileText.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace {

using nv::ProfileText;

TEST(ProfileText, FindsValuesAsTheHomePlatformReadsThem) {
    // An editor's byte order mark does not belong to the first header's name.
    const ProfileText profile("\xEF\xBB\xBF[Basic settings]\r\n"
                              "AantalFiles=9\r\n"
                              "Directory='1\r\n"
                              "geen sleutel\r\n"
                              "AantalFiles=tweede\r\n"
                              "[basic SETTINGS]\r\n"
                              "Extra=uit de tweede kop\r\n"
                              "[Donn\xE9"
                              "es]\r\n"
                              "Cl\xE9=\xE9t\xE9\r\n" +
                              std::string("Nul=voor\0na\r\n", 13) +
                              "[a=b]\r\n"
                              "Laatste=zonder regeleinde");
    const struct {
        const char* section;
        const char* key;
        std::optional<std::string> value;
    } cases[] = {
        {"basic settings", "aantalfiles", "9"}, // the first of two equal keys counts
        {"Basic settings", "Directory", "'1"},  // quotes go in pairs only
        {"Basic settings", "geen sleutel", std::nullopt},
        {"Basic settings", "Extra", std::nullopt}, // the second header of a name is not read
        {"DONN\xC9"
         "ES",
         "CL\xC9", "\xE9t\xE9"},
        {"Donn\xE9"
         "es",
         "Nul", "voor"},
        {"a=b", "Laatste", "zonder regeleinde"},
        {"Ontbreekt", "AantalFiles", std::nullopt},
    };
    for (const auto& c : cases)
        EXPECT_EQ(profile.find(c.section, c.key), c.value) << c.section << "/" << c.key;
}

TEST(ProfileText, StoresChangeOnlyTheirOwnLine) {
    const struct {
        const char* name;
        std::string before;
        const char* section;
        const char* key;
        std::string value;
        std::string after;
    } cases[] = {
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
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        ProfileText profile(c.before);
        profile.set(c.section, c.key, c.value);
        EXPECT_EQ(profile.render(), c.after);
    }
}

} // namespace
