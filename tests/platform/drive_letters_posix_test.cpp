#include "platform/posix/DriveLetterMemory.h"
#include "support/TempFolder.h"

#include <fstream>
#include <gtest/gtest.h>

using namespace nv;
namespace fs = std::filesystem;

namespace {

// The letters a new start of the program on the file gives the volumes present, in their order.
std::string start(const fs::path& file, const std::vector<std::string>& present, int64_t now,
                  const std::set<char>& blocked = {'C'}) {
    const std::vector<char> given = DriveLetterMemory(file.string()).assign(present, blocked, now);
    return std::string(given.begin(), given.end());
}

// The table after its first line, which says what the file is.
std::string rows(const nvtest::TempFolder& temp, const std::string& relative) {
    const std::string text = temp.read(relative);
    return text.substr(text.find('\n') + 1);
}

TEST(DriveLetterMemory, AVolumeKeepsItsLetterAcrossStartsAndPlugOrders) {
    nvtest::TempFolder temp;
    const fs::path file = temp.native("state/norvale-backup/drive-letters");
    const struct {
        std::vector<std::string> present; // in mount point order
        std::set<char> blocked;
        std::string letters;
    } starts[] = {
        {{"label:STICKA", "label:STICKB"}, {'C'}, "DE"},
        // B keeps E:, the newcomer C passes over A's D:.
        {{"label:STICKB", "label:STICKC"}, {'C'}, "EF"},
        {{"label:STICKB"}, {'C'}, "E"},
        {{"label:STICKC", "label:STICKA"}, {'C'}, "FD"},
        // A letter another drive takes now: B gets a free one for this start alone, and E:
        // again once it is free.
        {{"label:STICKB"}, {'C', 'E'}, "G"},
        {{"label:STICKB", "label:STICKD"}, {'C'}, "EG"},
        // Two volumes with one uuid (a copied stick): the second gets a letter of its own.
        {{"uuid:1234-ABCD", "uuid:1234-ABCD"}, {'C'}, "HI"},
    };
    int64_t now = 1000;
    for (const auto& s : starts)
        EXPECT_EQ(start(file, s.present, ++now, s.blocked), s.letters);
    // The guest letters were not kept; the file says what a user would read in it.
    EXPECT_EQ(rows(temp, "state/norvale-backup/drive-letters"),
              "D 1004 label:STICKA\nE 1006 label:STICKB\nF 1004 label:STICKC\n"
              "G 1006 label:STICKD\nH 1007 uuid:1234-ABCD\n");
    EXPECT_EQ(fs::status(file).permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

TEST(DriveLetterMemory, WhenEveryLetterIsHeldTheVolumeSeenLongestAgoGivesItsLetter) {
    nvtest::TempFolder temp;
    const fs::path file = temp.native("letters");
    // D: to Z: held by 23 volumes; V17 seen longest ago, then V3 and V5 alike.
    std::vector<std::string> all;
    {
        std::ofstream out(file);
        for (int i = 0; i < 23; ++i) {
            all.push_back("point:/media/v" + std::to_string(i));
            out << char('D' + i) << ' '
                << (i == 17            ? 10
                    : i == 3 || i == 5 ? 20
                                       : 100 + i)
                << ' ' << all.back() << "\n";
        }
    }
    // V17 is plugged in and keeps its letter, so the newcomers take V3's G: and V5's I:.
    EXPECT_EQ(start(file, {all[17], "label:NEW1", "label:NEW2"}, 500), "UGI");
    // With every letter taken by a present volume, a newcomer gets none.
    all[3] = "label:NEW1";
    all[5] = "label:NEW2";
    all.push_back("label:NEW3");
    const std::string given = start(file, all, 600);
    EXPECT_EQ(given.substr(0, 7), "DEFGHIJ");
    EXPECT_EQ(given.back(), '\0');
}

TEST(DriveLetterMemory, ADamagedOrUnreadableFileIsRebuiltNeverAReasonToFail) {
    nvtest::TempFolder temp;
    const fs::path file = temp.native("letters");
    // What could be read stands; the rest is gone from the file.
    const std::pair<std::string, char> files[] = {
        {"\x01\x02 niet te lezen\n", 'D'},
        {"E 5 label:STICKB\nE 6 label:OTHER\nF 7 label:STICKB\nG 8\nQ x label:Q\nB 1 label:B\n",
         'E'},
        {"[ 1 label:X\nF 2 uuid:\n", 'D'}, // a letter past Z and an empty key
    };
    for (const auto& [text, letter] : files) {
        std::ofstream(file, std::ios::binary) << text;
        EXPECT_EQ(start(file, {"label:STICKB"}, 50), std::string(1, letter)) << text;
        EXPECT_EQ(rows(temp, "letters"), std::string(1, letter) + " 50 label:STICKB\n");
    }
    // A folder where the file should be: the letters hold in this process all the same.
    fs::remove(file);
    fs::create_directories(file);
    DriveLetterMemory memory(file.string());
    EXPECT_EQ(memory.assign({"label:A", "label:B"}, {'C'}, 1), (std::vector<char>{'D', 'E'}));
    EXPECT_EQ(memory.assign({"label:B"}, {'C'}, 2), std::vector<char>{'E'});
    // Keys with blanks, line ends and backslashes come back as they went.
    fs::remove(file);
    const std::string odd = "point:/media/anna/NO NAME\\2\nx";
    start(file, {"label:A", odd}, 3);
    EXPECT_EQ(start(file, {odd}, 4), "E");
}

} // namespace
