// The backup run against what a running finance program and a real stick do: a source rewritten
// in place while it is copied, and a FUSE driver that refuses names as FAT does.

#include "backup/BackupRunFixture.h"
#include "support/ExpectBox.h"
#include "support/Noise.h"

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <fcntl.h>
#include <sys/mount.h>
#include <thread>
#include <unistd.h>

using namespace nv;
using namespace nvtest;

namespace {

class FileInUse : public BackupRunFixture {};

// A program that stops writing soon after the copy began gets a backup of its last state; one
// that goes on writing gets a box, and nothing of that file reaches the stick.
TEST_F(FileInUse, ASourceWrittenWhileItIsCopiedIsCopiedAgainOrToldAndLeftOut) {
    const std::uint64_t size = 24 << 20;
    const std::string ledger = source("NV_Ledger01.mdb", noise(size, 26));
    list({ledger, source("NV.ini", "ini")});
    for (const bool stops : {true, false}) {
        SCOPED_TRACE(stops);
        std::atomic<bool> over{false};
        int writes = 0;
        // Eight bytes at a time at ever other places, as a database writes.
        std::thread writer([&] {
            const int fd = ::open(machine.temp.native("bron/NV_Ledger01.mdb").c_str(), O_WRONLY);
            for (std::uint64_t n = 1; !over && ::pwrite(fd, &n, 8, (n * 40961) % size) == 8; ++n) {
                ++writes;
                // Stopping once the first copy has begun, its last write falls inside that copy.
                if (stops && machine.temp.copyLeftovers("stick/" + kToday) > 0) {
                    (void)::pwrite(fd, "laatste", 7, 0);
                    break;
                }
                std::this_thread::sleep_for(std::chrono::microseconds(100));
            }
            ::close(fd);
        });
        rerun();
        over = true;
        writer.join();
        EXPECT_GT(writes, 0);
        ASSERT_EQ(boxes.shown.size(), stops ? 2u : 3u);
        EXPECT_EQ(boxes.shown.back().title, stops ? "Back Up" : "Back Up met fout(en)");
        EXPECT_EQ(entries(kToday), (stops ? Log{"NV.ini", "NV_Ledger01.mdb"} : Log{"NV.ini"}));
        if (stops)
            EXPECT_TRUE(onStick(kToday + "/NV_Ledger01.mdb") ==
                        machine.temp.read("bron/NV_Ledger01.mdb"));
        else
            expectBox(boxes.shown[1], "Bestand wordt niet gekopieerd",
                      "Het bestand " + ledger +
                          " veranderde steeds terwijl het gekopieerd werd, waarschijnlijk omdat "
                          "Norvale nog open staat. Het is daarom niet in de backup opgenomen."
                          "\r\n\r\nSluit Norvale af en maak de backup opnieuw.",
                      Buttons::OK, Icon::Critical);
    }
}

// Told by the rules for names the file system's type asks for, or, where the type was not known,
// by the refusal of the copy itself: the same boxes, and only the fitting name on the stick.
class UnknownType : public FaultyMedium {
    NameRules nameRulesOf(const std::string&) override { return NameRules::Native; }
};

TEST_F(FileInUse, NamesAFusefatStickRefusesGetTheNameBoxWhetherOrNotItsTypeIsKnown) {
    const std::string image = machine.temp.native("fat.img").string();
    const std::string point = stick.native().string();
    if (::geteuid() != 0 || std::system(("truncate -s 16M '" + image + "' && mkfs.vfat '" + image +
                                         "' >/dev/null 2>&1 && fusefat -o rw+ '" + image + "' '" +
                                         point + "' >/dev/null 2>&1")
                                            .c_str()) != 0)
        GTEST_SKIP() << "needs root, fusefat and mkfs.vfat";
    struct Unmount {
        std::string point;
        ~Unmount() { ::umount2(point.c_str(), MNT_DETACH); }
    } unmount{point};
    EXPECT_EQ(files.nameRulesOf(stick.drive()), NameRules::Fat);

    Log rows;
    for (const char* name : {"a?1.txt", "a\"2.txt", "a:3.txt", "a|4.txt", "a*5.txt", "NV.ini"})
        rows.push_back(source(name, "x"));
    list(rows);
    UnknownType unknownType;
    std::vector<MessageBoxRequest> known;
    for (FileSystem* layer : std::initializer_list<FileSystem*>{&files, &unknownType}) {
        ScopedPlatformPart<FileSystem> use(&Platform::files, layer);
        rerun();
        ASSERT_EQ(boxes.shown.size(), 7u);
        for (std::size_t i = 1; i <= 5; ++i)
            EXPECT_NE(boxes.shown[i].text.find("kan niet naar de backup schijf worden gekopieerd"),
                      std::string::npos);
        if (known.empty())
            known = boxes.shown;
        for (std::size_t i = 0; i < 7; ++i)
            EXPECT_EQ(boxes.shown[i].text, known[i].text);
        EXPECT_EQ(entries(kToday), Log{"NV.ini"});
    }
}

} // namespace
