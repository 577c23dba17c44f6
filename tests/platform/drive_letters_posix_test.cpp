#include "platform/posix/DriveLetterMemory.h"
#include "support/TempFolder.h"

#include <fstream>
#include <gtest/gtest.h>
#include <sys/stat.h>

using namespace nv;
namespace fs = std::filesystem;

namespace {

// The table after its first line, which says what the file is.
std::string rows(const nvtest::TempFolder& temp, const std::string& relative) {
    const std::string text = temp.read(relative);
    return text.substr(text.find('\n') + 1);
}

// Each row is one start of the program: the volumes plugged in (in mount point order) and the
// letter each gets. Every row starts a new process on the same file.
TEST(DriveLetterMemory, AVolumeKeepsItsLetterAcrossStartsAndPlugOrders) {
    nvtest::TempFolder temp;
    const std::string path = temp.native("state/norvale-backup/drive-letters").string();
    struct Start {
        std::vector<std::string> present;
        std::set<char> blocked;
        std::string letters;
    };
    const std::vector<Start> starts = {
        {{"label:STICKA", "label:STICKB"}, {'C'}, "DE"},
        // B keeps E:, the newcomer C passes over A's D:.
        {{"label:STICKB", "label:STICKC"}, {'C'}, "EF"},
        {{"label:STICKB"}, {'C'}, "E"},
        // A returns after C and B: still D:.
        {{"label:STICKC", "label:STICKA"}, {'C'}, "FD"},
        // A letter another drive takes now: B gets a free one for this start alone...
        {{"label:STICKB"}, {'C', 'E'}, "G"},
        // ...and E: again once it is free.
        {{"label:STICKB", "label:STICKD"}, {'C'}, "EG"},
        // Two volumes with one uuid (a copied stick): the second gets a letter of its own.
        {{"uuid:1234-ABCD", "uuid:1234-ABCD"}, {'C'}, "HI"},
    };
    int64_t now = 1000;
    for (const Start& start : starts) {
        SCOPED_TRACE(start.letters);
        DriveLetterMemory memory(path);
        std::vector<char> given = memory.assign(start.present, start.blocked, ++now);
        EXPECT_EQ(std::string(given.begin(), given.end()), start.letters);
    }
    // The guest letters were not kept; the file says what a user would read in it.
    EXPECT_EQ(rows(temp, "state/norvale-backup/drive-letters"),
              "D 1004 label:STICKA\nE 1006 label:STICKB\nF 1004 label:STICKC\n"
              "G 1006 label:STICKD\nH 1007 uuid:1234-ABCD\n");
    struct stat st {};
    ASSERT_EQ(::stat(path.c_str(), &st), 0);
    EXPECT_EQ(st.st_mode & 0777, 0600u);
}

TEST(DriveLetterMemory, WhenEveryLetterIsHeldTheVolumeSeenLongestAgoGivesItsLetter) {
    nvtest::TempFolder temp;
    const std::string path = temp.native("letters").string();
    // D: to Z: held by 23 volumes; V17 was seen longest ago, V3 and V5 just as long ago as
    // each other after it.
    {
        std::ofstream out(path);
        for (int i = 0; i < 23; ++i) {
            int64_t seen = i == 17 ? 10 : (i == 3 || i == 5) ? 20 : 100 + i;
            out << static_cast<char>('D' + i) << ' ' << seen << " point:/media/v" << i << "\n";
        }
    }
    DriveLetterMemory memory(path);
    // V17 is plugged in: it keeps its letter, so the new one takes the next oldest, V3 (G:)
    // before V5 (I:), and a third takes I:.
    auto given = memory.assign({"point:/media/v17", "label:NEW1", "label:NEW2"}, {'C'}, 500);
    EXPECT_EQ(std::string(given.begin(), given.end()), "UGI");
    // With every letter taken by a present volume or another drive, a newcomer gets none.
    std::vector<std::string> all;
    for (int i = 0; i < 23; ++i)
        all.push_back(i == 3   ? "label:NEW1"
                      : i == 5 ? "label:NEW2"
                               : "point:/media/v" + std::to_string(i));
    all.push_back("label:NEW3");
    given = memory.assign(all, {'C'}, 600);
    EXPECT_EQ(given.back(), 0);
    EXPECT_EQ(given.front(), 'D');
}

TEST(DriveLetterMemory, ADamagedOrUnreadableFileIsRebuiltNeverAReasonToFail) {
    nvtest::TempFolder temp;
    const fs::path path = temp.native("letters");
    const std::vector<std::pair<std::string, std::string>> files = {
        {"garbage", "\x01\x02 niet te lezen\n"},
        {"a half line and duplicates",
         "E 5 label:STICKB\nE 6 label:OTHER\nF 7 label:STICKB\nG 8\nQ x label:Q\nB 1 label:B\n"},
        {"a letter past Z and an empty key", "[ 1 label:X\nF 2 uuid:\n"},
    };
    for (const auto& [what, text] : files) {
        SCOPED_TRACE(what);
        std::ofstream(path, std::ios::binary) << text;
        DriveLetterMemory memory(path.string());
        auto given = memory.assign({"label:STICKB"}, {'C'}, 50);
        // What could be read stands; the rest is gone from the file.
        const char expected = what == "a half line and duplicates" ? 'E' : 'D';
        EXPECT_EQ(given, std::vector<char>{expected});
        EXPECT_EQ(rows(temp, "letters"), std::string(1, expected) + " 50 label:STICKB\n");
    }
    // A folder where the file should be: the letters hold in this process all the same.
    fs::remove(path);
    fs::create_directories(path);
    DriveLetterMemory memory(path.string());
    EXPECT_EQ(memory.assign({"label:A", "label:B"}, {'C'}, 1), (std::vector<char>{'D', 'E'}));
    EXPECT_EQ(memory.assign({"label:B"}, {'C'}, 2), std::vector<char>{'E'});
    // Keys with blanks, line ends and backslashes come back as they went.
    fs::remove(path);
    const std::string odd = "point:/media/anna/NO NAME\\2\nx";
    DriveLetterMemory(path.string()).assign({"label:A", odd}, {'C'}, 3);
    EXPECT_EQ(DriveLetterMemory(path.string()).assign({odd}, {'C'}, 4), std::vector<char>{'E'});
}

} // namespace
