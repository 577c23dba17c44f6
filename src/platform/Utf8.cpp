#include "platform/Utf8.h"

#include <cstdint>

namespace nv {

namespace {

unsigned char at(const std::string& text, std::size_t k) {
    return static_cast<unsigned char>(text[k]);
}

// One sequence at text[i]; surrogates pass when allowed. Returns the length, 0 when malformed.
std::size_t sequence(const std::string& text, std::size_t i, bool surrogates, char32_t& c) {
    unsigned char lead = at(text, i);
    std::size_t extra;
    if (lead < 0x80) {
        c = lead;
        return 1;
    } else if (lead >= 0xC2 && lead <= 0xDF) {
        extra = 1;
        c = lead & 0x1F;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        extra = 2;
        c = lead & 0x0F;
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        extra = 3;
        c = lead & 0x07;
    } else {
        return 0;
    }
    if (i + extra >= text.size())
        return 0;
    for (std::size_t k = 1; k <= extra; ++k) {
        if ((at(text, i + k) & 0xC0) != 0x80)
            return 0;
        c = (c << 6) | (at(text, i + k) & 0x3F);
    }
    static constexpr char32_t kSmallest[4] = {0, 0x80, 0x800, 0x10000};
    if (c < kSmallest[extra] || c > 0x10FFFF || (!surrogates && c >= 0xD800 && c <= 0xDFFF))
        return 0;
    return extra + 1;
}

void appendUnit(std::string& out, uint16_t unit, bool bigEndian) {
    char hi = static_cast<char>(unit >> 8);
    char lo = static_cast<char>(unit & 0xFF);
    out += bigEndian ? hi : lo;
    out += bigEndian ? lo : hi;
}

} // namespace

bool isAscii(const std::string& text) {
    for (char c : text)
        if (static_cast<unsigned char>(c) >= 0x80)
            return false;
    return true;
}

char32_t decodeUtf8(const std::string& text, std::size_t& i) {
    char32_t c = 0;
    std::size_t length = sequence(text, i, false, c);
    if (length == 0) {
        ++i;
        return 0xFFFD;
    }
    i += length;
    return c;
}

void appendUtf8(std::string& out, char32_t c) {
    if (c < 0x80) {
        out += static_cast<char>(c);
    } else if (c < 0x800) {
        out += static_cast<char>(0xC0 | (c >> 6));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        out += static_cast<char>(0xE0 | (c >> 12));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (c >> 18));
        out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    }
}

bool isValidUtf8(const std::string& text) {
    if (isAscii(text))
        return true;
    char32_t c;
    for (std::size_t i = 0; i < text.size();) {
        std::size_t length = sequence(text, i, false, c);
        if (length == 0)
            return false;
        i += length;
    }
    return true;
}

std::string validUtf8(const std::string& text) {
    if (isValidUtf8(text))
        return text;
    std::string out;
    out.reserve(text.size());
    char32_t c;
    for (std::size_t i = 0; i < text.size();) {
        std::size_t length = sequence(text, i, false, c);
        if (length == 0) {
            out += '?';
            ++i;
        } else {
            out.append(text, i, length);
            i += length;
        }
    }
    return out;
}

std::string firstCharacters(std::string text, std::size_t count) {
    std::size_t i = 0;
    for (std::size_t n = 0; n < count && i < text.size(); ++n)
        decodeUtf8(text, i);
    if (i < text.size())
        text.resize(i);
    return text;
}

std::string utf8FromUtf16(const std::string& bytes, bool bigEndian) {
    std::string out;
    out.reserve(bytes.size());
    auto unit = [&](std::size_t k) -> char32_t {
        unsigned a = at(bytes, k), b = at(bytes, k + 1);
        return bigEndian ? (a << 8 | b) : (b << 8 | a);
    };
    for (std::size_t k = 0; k + 1 < bytes.size(); k += 2) {
        char32_t u = unit(k);
        if (u >= 0xD800 && u <= 0xDBFF && k + 3 < bytes.size()) {
            char32_t low = unit(k + 2);
            if (low >= 0xDC00 && low <= 0xDFFF) {
                appendUtf8(out, 0x10000 + ((u - 0xD800) << 10) + (low - 0xDC00));
                k += 2;
                continue;
            }
        }
        appendUtf8(out, u);
    }
    return out;
}

std::string utf16FromUtf8(const std::string& text, bool bigEndian) {
    std::string out;
    out.reserve(text.size() * 2);
    char32_t c = 0;
    for (std::size_t i = 0; i < text.size();) {
        std::size_t length = sequence(text, i, true, c);
        if (length == 0) {
            c = 0xFFFD;
            length = 1;
        }
        i += length;
        if (c >= 0x10000) {
            appendUnit(out, static_cast<uint16_t>(0xD800 + ((c - 0x10000) >> 10)), bigEndian);
            appendUnit(out, static_cast<uint16_t>(0xDC00 + ((c - 0x10000) & 0x3FF)), bigEndian);
        } else {
            appendUnit(out, static_cast<uint16_t>(c), bigEndian);
        }
    }
    return out;
}

} // namespace nv
