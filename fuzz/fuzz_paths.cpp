// Fuzzes the path routines. The input's first line is a path in drive form, the second a native
// path, the third a value of NVBACKUP_DRIVES and the rest a mount table. Drives lie over
// folders below the fuzzing folder, and every change to the disk goes through a file layer
// that refuses, loudly, to touch anything outside it.

#include "FuzzFolder.h"

#include "backup/BackupRun.h"
#include "platform/CaseFold.h"
#include "platform/FileFailure.h"
#include "platform/Platform.h"
#include "platform/posix/DriveTable.h"
#include "platform/posix/PosixFileSystem.h"
#include "platform/posix/PosixPathResolution.h"
#include "startup/Paths.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <sys/stat.h>
#include <vector>

namespace {

// Native paths of the fuzzing folder's own drives.
struct Tree {
    std::string root;
    std::string c, e, backup, nested, gone;
};
Tree gTree;

nv::DriveTable& drives() {
    static nv::DriveTable table([] {
        nv::DriveTable::Options o;
        o.scanMounts = false; // the machine's mounts stay out of it
        return o;
    }());
    return table;
}

// Passes reads on, and checks every path a change would reach before it is made.
class GuardedFiles : public nv::FileSystem {
public:
    explicit GuardedFiles(nv::DriveTable& table) : table_(table), real_(table) {}

    std::string firstMatch(const std::string& spec) override { return real_.firstMatch(spec); }
    void moveFile(const std::string& from, const std::string& to) override {
        guard(from);
        guard(to);
        real_.moveFile(from, to);
    }
    void copyFile(const std::string& from, const std::string& to) override {
        guard(to);
        real_.copyFile(from, to);
    }
    void deleteFile(const std::string& path) override {
        guard(path);
        real_.deleteFile(path);
    }
    void writeFile(const std::string& path, const std::string& bytes) override {
        guard(path);
        real_.writeFile(path, bytes);
    }
    void makeFolder(const std::string& path) override {
        guard(path);
        real_.makeFolder(path);
    }
    void deleteByPattern(const std::string& spec) override {
        guard(spec);
        real_.deleteByPattern(spec);
    }
    void removeFolder(const std::string& path) override {
        guard(path);
        real_.removeFolder(path);
    }
    std::vector<std::string> listFolders(const std::string& folder) override {
        return real_.listFolders(folder);
    }
    std::vector<std::string> listFiles(const std::string& folder,
                                       const std::string& pattern) override {
        return real_.listFiles(folder, pattern);
    }
    void flushFolder(const std::string& folder) override { real_.flushFolder(folder); }
    void removeCopyLeftovers(const std::string& folder) override {
        guard(folder);
        real_.removeCopyLeftovers(folder);
    }

private:
    void guard(const std::string& drivePath) {
        std::string native;
        try {
            native = nv::nativePath(table_, drivePath);
        } catch (const nv::FileFailure&) {
            return; // the real layer fails the same way, before it touches anything
        }
        if (!nvfuzz::staysBelow(native, gTree.root))
            nvfuzz::fail("a change would reach outside the fuzzing folder",
                         drivePath + " -> " + native);
    }

    nv::DriveTable& table_;
    nv::PosixFileSystem real_;
};

class CountedBoxes : public nv::MessageBoxes {
public:
    nv::Answer show(const nv::MessageBoxRequest&) override {
        ++shown;
        return nv::Answer::OK;
    }
    int shown = 0;
};

GuardedFiles* gFiles = nullptr;
CountedBoxes* gBoxes = nullptr;

std::vector<std::string> lines(const std::string& text, std::size_t count) {
    std::vector<std::string> out;
    std::size_t pos = 0;
    while (out.size() + 1 < count) {
        std::size_t nl = text.find('\n', pos);
        if (nl == std::string::npos)
            break;
        out.push_back(text.substr(pos, nl - pos));
        pos = nl + 1;
    }
    out.push_back(pos <= text.size() ? text.substr(pos) : std::string());
    out.resize(count);
    return out;
}

bool endsWith(const std::string& s, const std::string& tail) {
    return s.size() >= tail.size() && s.compare(s.size() - tail.size(), tail.size(), tail) == 0;
}

// The drive root a native path lies under, taken from the letter it was asked through.
std::string rootOf(char letter) {
    auto drive = drives().find(letter);
    return drive ? drive->root : std::string();
}

// A native path the drive table can write without losing anything: absolute, no empty, "." or
// ".." component, no trailing slash, no backslash or NUL.
bool plainNative(const std::string& p) {
    if (p.empty() || p[0] != '/' || p.find('\\') != std::string::npos ||
        p.find('\0') != std::string::npos)
        return false;
    if (p == "/")
        return true;
    std::size_t start = 0;
    while (start < p.size()) {
        std::size_t end = p.find('/', start + 1);
        if (end == std::string::npos)
            end = p.size();
        std::string part = p.substr(start + 1, end - start - 1);
        if (part.empty() || part == "." || part == "..")
            return false;
        start = end;
    }
    return true;
}

void checkFileOfPath(const std::string& input) {
    std::string path = input;
    std::string file;
    try {
        file = nv::fFileOfPath(path);
    } catch (const nv::FileFailure& failure) {
        NVFUZZ_CHECK(failure.Number == nv::kFailSubscript, input);
        NVFUZZ_CHECK(path.empty(), input);
        return;
    }
    // At most the one trailing backslash goes; the answer is the tail after the last one.
    NVFUZZ_CHECK(path == input || path + "\\" == input, input);
    NVFUZZ_CHECK(file.find('\\') == std::string::npos, input);
    NVFUZZ_CHECK(endsWith(path, file), input);
    NVFUZZ_CHECK(path.size() == file.size() || path[path.size() - file.size() - 1] == '\\', input);

    // The parts put back together with backslashes are the path again.
    std::vector<std::string> parts = nv::splitPath(path);
    std::string joined;
    for (std::size_t i = 0; i < parts.size(); ++i)
        joined += (i ? "\\" : "") + parts[i];
    NVFUZZ_CHECK(joined == path, path);
}

void checkNativePath(const std::string& drivePath) {
    std::string native;
    try {
        native = nv::nativePath(drives(), drivePath);
    } catch (const nv::FileFailure& failure) {
        NVFUZZ_CHECK(failure.Number == nv::kFailBadFileName ||
                         failure.Number == nv::kFailDeviceUnavailable,
                     drivePath);
        return;
    }
    std::string root = rootOf(drivePath[0]);
    NVFUZZ_CHECK(!root.empty(), drivePath);
    NVFUZZ_CHECK(nvfuzz::staysBelow(native, root), drivePath + " -> " + native);

    // Back to drive form and in again: the same file, though perhaps through another letter.
    std::string again = drives().toDriveForm(native);
    NVFUZZ_CHECK(again.size() >= 3 && again[1] == ':' && again[2] == '\\', native + " " + again);
    std::string native2;
    try {
        native2 = nv::nativePath(drives(), again);
    } catch (const nv::FileFailure&) {
        nvfuzz::fail("drive form of a native path does not resolve", native + " -> " + again);
    }
    NVFUZZ_CHECK(native2 == native,
                 drivePath + " -> " + native + " -> " + again + " -> " + native2);
}

void checkToDriveForm(const std::string& native, nv::DriveTable& table, bool onDisk) {
    std::string form = table.toDriveForm(native);
    if (form == native)
        return;
    NVFUZZ_CHECK(form.size() >= 3 && form[1] == ':' && form[2] == '\\', native + " " + form);
    auto drive = table.find(form[0]);
    if (!drive) {
        // Only a letter the table keeps for a stick that is away may be named without being there.
        auto all = table.list();
        NVFUZZ_CHECK(std::any_of(all.begin(), all.end(),
                                 [&](const nv::DriveInfo& d) { return d.letter == form[0]; }),
                     form);
        return;
    }
    if (!plainNative(native) || !plainNative(drive->root))
        return;
    // A plain path is the root and the rest, slashes for backslashes.
    std::string rest = form.substr(3);
    for (char& c : rest)
        if (c == '\\')
            c = '/';
    std::string whole =
        rest.empty() ? drive->root : (drive->root == "/" ? "" : drive->root) + "/" + rest;
    NVFUZZ_CHECK(whole == native, native + " -> " + form);
    if (!onDisk)
        return;
    // And it leads back to the same path, but for letters a folder on disk has in another case.
    std::string back;
    try {
        back = nv::nativePath(table, form);
    } catch (const nv::FileFailure& failure) {
        NVFUZZ_CHECK(failure.Number == nv::kFailDeviceUnavailable && !table.ready(form[0]), form);
        return;
    }
    NVFUZZ_CHECK(nvfuzz::staysBelow(back, drive->root), native + " -> " + form + " -> " + back);
    NVFUZZ_CHECK(nv::upperCase(back) == nv::upperCase(native),
                 native + " -> " + form + " -> " + back);
}

void checkDriveTable(const std::string& variable, const std::string& mountinfo,
                     const std::string& native) {
    std::set<char> given;
    for (const auto& [letter, root] : nv::parseDrivesVariable(variable)) {
        NVFUZZ_CHECK(letter >= 'A' && letter <= 'Z', variable);
        NVFUZZ_CHECK(!root.empty() && root[0] == '/', variable);
        given.insert(letter);
    }
    std::string mounts = gTree.root + "/mountinfo";
    nvfuzz::writeBytes(mounts, mountinfo);
    nv::DriveTable::Options o;
    o.home = "/home/kantoor";
    o.drivesVariable = variable;
    o.mountinfoPath = mounts;
    nv::DriveTable table(o);
    for (const nv::DriveInfo& d : table.list()) {
        NVFUZZ_CHECK(d.letter >= 'A' && d.letter <= 'Z', std::string(1, d.letter));
        // A letter the user gave a folder under /media is a stick too, on any letter.
        if (d.mounted && !given.count(d.letter))
            NVFUZZ_CHECK(d.letter >= 'D' &&
                             (d.root.rfind("/media/", 0) == 0 ||
                              d.root.rfind("/run/media/", 0) == 0 || d.root.rfind("/mnt/", 0) == 0),
                         d.root);
    }
    // This table's C: is the real "/": text only, nothing on disk is asked.
    checkToDriveForm(native, table, false);
}

void checkFullPath(const std::string& file) {
    const std::string backupFolder = "E:\\Backup";
    int boxes = gBoxes->shown;
    std::string result = nv::fFullPath(file, backupFolder);
    if (result.empty()) {
        NVFUZZ_CHECK(gBoxes->shown == boxes + 1, file);
    } else {
        NVFUZZ_CHECK(result.rfind(backupFolder + "\\", 0) == 0, file + " -> " + result);
        // The folder the copy will go into is there now.
        std::string folder = nv::splitLast(result).first;
        struct stat st {};
        try {
            std::string native = nv::nativePath(drives(), folder);
            NVFUZZ_CHECK(::stat(native.c_str(), &st) == 0 && S_ISDIR(st.st_mode), folder);
        } catch (const nv::FileFailure&) {
            nvfuzz::fail("the backup folder of a path does not resolve", file + " -> " + result);
        }
    }
    // A folder part such as "../x" leads beside the backup folder, as it does on the home
    // platform; what fFullPath made must still lie on the backup drive. Clear it for the next
    // input.
    nvfuzz::removeAllBut(gTree.backup, {"Norvale", "Nested"});
    nvfuzz::removeAllBut(gTree.e, {"Backup"});
    for (const std::string& name : nvfuzz::namesIn(gTree.root))
        NVFUZZ_CHECK(name == "c" || name == "e" || name == "mountinfo", file + " made " + name);
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    gTree.root = nvfuzz::fuzzRoot();
    gTree.c = gTree.root + "/c";
    gTree.e = gTree.root + "/e";
    gTree.backup = gTree.e + "/Backup";
    gTree.nested = gTree.backup + "/Nested";
    gTree.gone = gTree.root + "/gone";
    for (const char* folder : {"/c/Data/Norvale/Sub",
                               "/c/Donn\xC3\xA9"
                               "es",
                               "/c/lower", "/e/Backup/Norvale", "/e/Backup/Nested"})
        nvfuzz::makeFolder(gTree.root + folder);
    for (const char* file : {"/c/boot.ini", "/c/Data/Norvale/NVbackuptool.ini",
                             "/c/Data/Norvale/NV_Ledger01.mdb", "/c/Data/Norvale/Sub/x.NVD",
                             "/c/Donn\xC3\xA9"
                             "es/\xC3\xA9t\xC3\xA9.ini",
                             "/c/lower/MiXeD.txt"})
        nvfuzz::writeBytes(gTree.root + file, "x");

    nv::DriveTable& table = drives();
    table.setFolder('C', gTree.c);
    table.setFolder('E', gTree.e);
    table.setFolder('F', gTree.nested); // inside E:, so a path there has two drive forms
    table.setFolder('G', gTree.gone);   // a stick that was pulled
    static GuardedFiles files(table);
    static CountedBoxes boxes;
    gFiles = &files;
    gBoxes = &boxes;
    nv::Platform p;
    p.files = &files;
    p.drives = &table;
    p.boxes = &boxes;
    static nv::ScopedPlatform installed(p);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    std::string text(reinterpret_cast<const char*>(data), size);
    std::vector<std::string> in = lines(text, 4);
    const std::string& drivePath = in[0];
    const std::string& native = in[1];

    // Letter by letter, names compare as their upper cases do; a folder is searched one way and
    // indexed the other.
    for (const std::string& other : {native, nv::upperCase(drivePath)})
        NVFUZZ_CHECK(nv::equalsIgnoringCase(drivePath, other) ==
                         (nv::upperCase(drivePath) == nv::upperCase(other)),
                     drivePath + " / " + other);

    checkFileOfPath(drivePath);
    checkFileOfPath(native);
    checkNativePath(drivePath);
    // The native line read as a path below the fuzzing folder, and as it stands.
    checkToDriveForm(native, drives(), false);
    std::string below = gTree.root + (native.empty() || native[0] != '/' ? "/" : "") + native;
    checkToDriveForm(below, drives(), true);
    checkDriveTable(in[2], in[3], native);
    checkFullPath(drivePath);
    return 0;
}
