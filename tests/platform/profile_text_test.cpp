// The text model of a profile file, in memory: what a lookup finds and the bytes a store leaves.
// That its answers agree with the text it renders is fuzzed (fuzz_settings).
#include "platform/ProfileText.h"

#include <gtest/gtest.h>

#include <optional>
#include <tuple>

namespace {

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

} // namespace
