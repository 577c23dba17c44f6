#include "platform/Cp1252.h"

#include <cstdint>

namespace nv {

namespace {

// Code points of the bytes 0x80..0x9F; the five holes of the code page keep their own value.
constexpr char32_t kHighControls[32] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

void appendUtf8(std::string& out, char32_t c) {
    if (c < 0x80) {
        out += static_cast<char>(c);
    } else if (c < 0x800) {
        out += static_cast<char>(0xC0 | (c >> 6));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else {
        out += static_cast<char>(0xE0 | (c >> 12));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    }
}

// Latin Extended-A (U+0100 to U+017F) without its accents, as the home platform's best fit
// writes it; the letters the code page has itself are found above, '?' where nothing fits.
constexpr char kBestFit[] =
    "AaAaAaCcCcCcCcDdDdEeEeEeEeEeGgGgGgGgHhHhIiIiIiIiIi??JjKk?LlLlLlLlLlNnNnNn?NnOoOoOo??"
    "RrRrRrSsSsSsSsTtTtTtUuUuUuUuUuUuWwYyYZzZzZz?";

char byteFor(char32_t c) {
    if (c < 0x80 || (c >= 0xA0 && c <= 0xFF))
        return static_cast<char>(c);
    for (int i = 0; i < 32; ++i)
        if (kHighControls[i] == c)
            return static_cast<char>(0x80 + i);
    if (c >= 0x100 && c <= 0x17F)
        return kBestFit[c - 0x100];
    return '?';
}

// Decodes one UTF-8 sequence at text[i]; a malformed byte counts as one unknown character.
char32_t decode(const std::string& text, std::size_t& i) {
    auto byte = [&](std::size_t k) { return static_cast<unsigned char>(text[k]); };
    unsigned char lead = byte(i);
    int extra;
    char32_t c;
    if (lead < 0x80) {
        ++i;
        return lead;
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
        ++i;
        return 0xFFFD;
    }
    if (i + extra >= text.size()) {
        ++i;
        return 0xFFFD;
    }
    for (int k = 1; k <= extra; ++k) {
        if ((byte(i + k) & 0xC0) != 0x80) {
            ++i;
            return 0xFFFD;
        }
        c = (c << 6) | (byte(i + k) & 0x3F);
    }
    static constexpr char32_t kSmallest[4] = {0, 0x80, 0x800, 0x10000};
    if (c < kSmallest[extra] || c > 0x10FFFF || (c >= 0xD800 && c <= 0xDFFF)) {
        ++i;
        return 0xFFFD;
    }
    i += extra + 1;
    return c;
}

bool isAscii(const std::string& text) {
    for (char c : text)
        if (static_cast<unsigned char>(c) >= 0x80)
            return false;
    return true;
}

} // namespace

std::string utf8FromCp1252(const std::string& bytes) {
    if (isAscii(bytes))
        return bytes;
    std::string out;
    out.reserve(bytes.size() + bytes.size() / 8);
    for (char b : bytes) {
        auto u = static_cast<unsigned char>(b);
        if (u < 0x80)
            out += b;
        else if (u < 0xA0)
            appendUtf8(out, kHighControls[u - 0x80]);
        else
            appendUtf8(out, u);
    }
    return out;
}

std::string cp1252FromUtf8(const std::string& text) {
    if (isAscii(text))
        return text;
    std::string out;
    out.reserve(text.size());
    std::size_t i = 0;
    while (i < text.size()) {
        auto u = static_cast<unsigned char>(text[i]);
        if (u < 0x80) {
            out += text[i++];
            continue;
        }
        out += byteFor(decode(text, i));
    }
    return out;
}

} // namespace nv
