#include "FuzzFolder.h"

#include "support/TempFolder.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <sys/stat.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace nvfuzz {

namespace {

// /dev/shm, where a flush costs nothing, unless TMPDIR says otherwise.
fs::path base() {
    if (const char* tmp = std::getenv("TMPDIR"); tmp && *tmp)
        return tmp;
    if (struct stat st{};
        ::stat("/dev/shm", &st) == 0 && S_ISDIR(st.st_mode) && ::access("/dev/shm", W_OK) == 0)
        return "/dev/shm";
    return "/tmp";
}

} // namespace

// The kit's folder is already the folder's one true name, as drive roots compared as text need.
const std::string& fuzzRoot() {
    static const nvtest::TempFolder folder(base());
    static const std::string root = folder.native().string();
    return root;
}

void makeFolder(const std::string& native) {
    std::error_code ec;
    fs::create_directories(native, ec);
    if (ec)
        fail("cannot make folder", native + ": " + ec.message());
}

void writeBytes(const std::string& native, const std::string& bytes) {
    std::ofstream out(native, std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (!out)
        fail("cannot write", native);
}

std::string readBytes(const std::string& native) {
    std::ifstream in(native, std::ios::binary);
    std::ostringstream buffer;
    buffer << in.rdbuf();
    return buffer.str();
}

std::vector<std::string> namesIn(const std::string& native) {
    std::vector<std::string> names;
    std::error_code ec;
    for (const auto& entry : fs::directory_iterator(native, ec))
        names.push_back(entry.path().filename().string());
    return names;
}

void removeAllBut(const std::string& native, const std::vector<std::string>& keep) {
    for (const std::string& name : namesIn(native)) {
        bool kept = false;
        for (const std::string& k : keep)
            kept = kept || k == name;
        if (!kept) {
            std::error_code ec;
            fs::remove_all(native + "/" + name, ec);
        }
    }
}

bool staysBelow(const std::string& native, const std::string& folder) {
    std::string seen = native.substr(0, native.find('\0'));
    if (seen != folder && seen.rfind(folder + "/", 0) != 0)
        return false;
    std::size_t start = folder.size();
    while (start < seen.size()) {
        std::size_t end = seen.find('/', start + 1);
        if (end == std::string::npos)
            end = seen.size();
        std::string part = seen.substr(start + 1, end - start - 1);
        if (part == "." || part == "..")
            return false;
        start = end;
    }
    return true;
}

void fail(const char* what, const std::string& detail) {
    std::fprintf(stderr, "\n==nvfuzz== invariant broken: %s\n", what);
    if (!detail.empty()) {
        std::fprintf(stderr, "==nvfuzz== ");
        for (unsigned char c : detail) {
            if (c >= 0x20 && c < 0x7F && c != '\\')
                std::fputc(c, stderr);
            else
                std::fprintf(stderr, "\\x%02X", c);
        }
        std::fputc('\n', stderr);
    }
    std::abort();
}

} // namespace nvfuzz
