#include "support/TempFolder.h"

#include "platform/DriveFormConversion.h"
#include "platform/FileSystem.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <fstream>
#include <iterator>
#include <stdexcept>

#ifdef _WIN32
#include <windows.h>
#endif

namespace fs = std::filesystem;

namespace nvtest {

namespace {
// Both separators are taken, so that a test may write a path either way.
std::string withSeparator(std::string relative, char separator) {
    std::replace(relative.begin(), relative.end(), separator == '/' ? '\\' : '/', separator);
    return relative;
}
} // namespace

TempFolder::TempFolder() : TempFolder(fs::temp_directory_path()) {}

TempFolder::TempFolder(const fs::path& under) {
    static std::atomic<int> counter{0};
    const auto stamp = std::chrono::steady_clock::now().time_since_epoch().count();
    for (int attempt = 0; attempt < 100; ++attempt) {
        fs::path candidate =
            under / ("nvtest-" + std::to_string(stamp) + "-" + std::to_string(counter++));
        if (fs::create_directory(candidate)) {
            native_ = fs::canonical(candidate);
            return;
        }
    }
    throw std::runtime_error("no temporary folder");
}

// Tests leave folders without write permission behind; they must go all the same.
TempFolder::~TempFolder() {
    std::error_code ec;
    fs::permissions(native_, fs::perms::owner_all, fs::perm_options::add, ec);
    for (auto it = fs::recursive_directory_iterator(native_, ec);
         it != fs::recursive_directory_iterator(); it.increment(ec))
        if (it->is_directory(ec))
            fs::permissions(it->path(), fs::perms::owner_all, fs::perm_options::add, ec);
    fs::remove_all(native_, ec);
}

std::string TempFolder::drive() const {
    return nv::driveFormOf(native_.string());
}

std::string TempFolder::drive(const std::string& relative) const {
    return drive() + "\\" + withSeparator(relative, '\\');
}

fs::path TempFolder::native(const std::string& relative) const {
    return native_ / fromUtf8(withSeparator(relative, '/'));
}

void TempFolder::write(const std::string& relative, const std::string& bytes) const {
    fs::path p = native(relative);
    fs::create_directories(p.parent_path());
    std::ofstream out(p, std::ios::binary | std::ios::trunc);
    if (!(out << bytes))
        throw std::runtime_error("cannot write " + p.string());
}

std::string TempFolder::read(const std::string& relative) const {
    std::ifstream in(native(relative), std::ios::binary);
    if (!in)
        throw std::runtime_error("cannot read " + native(relative).string());
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

bool TempFolder::exists(const std::string& relative) const {
    return fs::exists(native(relative));
}

void TempFolder::hide(const std::string& relative) const {
#ifdef _WIN32
    std::wstring path = native(relative).wstring();
    DWORD attributes = GetFileAttributesW(path.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES ||
        !SetFileAttributesW(path.c_str(), attributes | FILE_ATTRIBUTE_HIDDEN))
        throw std::runtime_error("cannot hide " + native(relative).string());
#else
    (void)relative;
#endif
}

void TempFolder::leaveCopyLeftover(const std::string& relative) const {
    const std::size_t cut = relative.find_last_of('/');
    const std::string folder = cut == std::string::npos ? "" : relative.substr(0, cut + 1);
    const std::string name = relative.substr(folder.size());
    // No process can have a number this high, so its writer has surely ended.
    const std::string leftover = folder + "." + name + nv::kCopyTemporaryMark + "999999999-0";
    write(leftover, "half a copy");
    hide(leftover);
}

std::size_t TempFolder::copyLeftovers(const std::string& relative) const {
    std::size_t count = 0;
    std::error_code ec;
    for (fs::recursive_directory_iterator it(native(relative), ec), end; !ec && it != end;
         it.increment(ec))
        count += nv::isCopyTemporary(it->path().filename().string());
    return count;
}

} // namespace nvtest
