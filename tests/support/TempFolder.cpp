#include "support/TempFolder.h"

#include "platform/NativeForm.h"

#include <atomic>
#include <chrono>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace fs = std::filesystem;

namespace nvtest {

namespace {
std::string toNativeRelative(std::string relative) {
    for (char& c : relative)
        if (c == '\\')
            c = '/';
    return relative;
}
} // namespace

TempFolder::TempFolder() {
    static std::atomic<int> counter{0};
    auto stamp = std::chrono::steady_clock::now().time_since_epoch().count();
    for (int attempt = 0; attempt < 100; ++attempt) {
        std::ostringstream name;
        name << "nvtest-" << stamp << "-" << counter++;
        fs::path candidate = fs::temp_directory_path() / name.str();
        if (fs::create_directory(candidate)) {
            native_ = fs::canonical(candidate);
            return;
        }
    }
    throw std::runtime_error("no temporary folder");
}

TempFolder::~TempFolder() {
    std::error_code ec;
    fs::permissions(native_, fs::perms::owner_all, fs::perm_options::add, ec);
    for (auto it = fs::recursive_directory_iterator(native_, ec);
         it != fs::recursive_directory_iterator(); it.increment(ec)) {
        if (it->is_directory(ec))
            fs::permissions(it->path(), fs::perms::owner_all, fs::perm_options::add, ec);
    }
    fs::remove_all(native_, ec);
}

std::string TempFolder::drive() const {
    return nv::driveFormOf(native_.string());
}

std::string TempFolder::drive(const std::string& relative) const {
    std::string rel = relative;
    for (char& c : rel)
        if (c == '/')
            c = '\\';
    return drive() + "\\" + rel;
}

fs::path TempFolder::native(const std::string& relative) const {
    return native_ / fs::path(toNativeRelative(relative));
}

void TempFolder::write(const std::string& relative, const std::string& bytes) const {
    fs::path p = native(relative);
    fs::create_directories(p.parent_path());
    std::ofstream out(p, std::ios::binary | std::ios::trunc);
    out << bytes;
    if (!out)
        throw std::runtime_error("cannot write " + p.string());
}

std::string TempFolder::read(const std::string& relative) const {
    std::ifstream in(native(relative), std::ios::binary);
    if (!in)
        throw std::runtime_error("cannot read " + native(relative).string());
    std::ostringstream buffer;
    buffer << in.rdbuf();
    return buffer.str();
}

bool TempFolder::exists(const std::string& relative) const {
    return fs::exists(native(relative));
}

} // namespace nvtest
