#include "platform/CaseFold.h"

#include "platform/Utf8.h"

#include <algorithm>
#include <cstdint>
#include <utility>

namespace nv {

namespace {

// The code point that starts at s[i], and how many bytes it takes; a stray byte stands for
// itself.
std::pair<char32_t, std::size_t> codePointAt(std::string_view s, std::size_t i) {
    auto b = static_cast<unsigned char>(s[i]);
    std::size_t extra = b >= 0xF0 ? 3 : b >= 0xE0 ? 2 : b >= 0xC0 ? 1 : 0;
    char32_t cp = b & (0x3F >> extra);
    bool ok = extra > 0 && i + extra < s.size();
    for (std::size_t k = 1; ok && k <= extra; ++k) {
        auto c = static_cast<unsigned char>(s[i + k]);
        ok = (c & 0xC0) == 0x80;
        cp = (cp << 6) | (c & 0x3F);
    }
    if (!ok)
        return {b, 1};
    return {cp, extra + 1};
}

char32_t upper(char32_t c) {
    if (c >= 'a' && c <= 'z')
        return c - 32;
    // Latin-1 letters à..þ except ÷
    if (c >= 0xE0 && c <= 0xFE && c != 0xF7)
        return c - 32;
    if (c == 0xFF)
        return 0x178;
    return c;
}

} // namespace

std::string upperCase(const std::string& text) {
    // Most names are plain ASCII, which changes in place; a folder is listed name by name.
    std::string out = text;
    bool ascii = true;
    for (char& c : out) {
        if (static_cast<unsigned char>(c) >= 0x80) {
            ascii = false;
            break;
        }
        if (c >= 'a' && c <= 'z')
            c = static_cast<char>(c - 32);
    }
    if (ascii)
        return out;
    out.clear();
    for (std::size_t i = 0; i < text.size();) {
        auto [cp, size] = codePointAt(text, i);
        appendUtf8(out, upper(cp));
        i += size;
    }
    return out;
}

std::u32string upperCodePoints(const std::string& text) {
    std::u32string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size();) {
        auto [cp, size] = codePointAt(text, i);
        out.push_back(upper(cp));
        i += size;
    }
    return out;
}

bool equalsIgnoringCase(std::string_view a, std::string_view b) {
    std::size_t i = 0;
    std::size_t j = 0;
    while (i < a.size() && j < b.size()) {
        auto [ca, sizeA] = codePointAt(a, i);
        auto [cb, sizeB] = codePointAt(b, j);
        if (upper(ca) != upper(cb))
            return false;
        i += sizeA;
        j += sizeB;
    }
    return i == a.size() && j == b.size();
}

void sortIgnoringCase(std::vector<std::string>& names) {
    std::vector<std::pair<std::string, std::string>> keyed;
    keyed.reserve(names.size());
    for (std::string& name : names)
        keyed.emplace_back(upperCase(name), std::move(name));
    std::sort(keyed.begin(), keyed.end());
    for (std::size_t i = 0; i < keyed.size(); ++i)
        names[i] = std::move(keyed[i].second);
}

} // namespace nv
