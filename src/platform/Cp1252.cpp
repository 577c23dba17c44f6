#include "platform/Cp1252.h"

#include "platform/Utf8.h"

#include <cstdint>

namespace nv {

namespace {

// Code points of the bytes 0x80..0x9F; the five holes of the code page keep their own value.
constexpr char32_t kHighControls[32] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

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
        out += byteFor(decodeUtf8(text, i));
    }
    return out;
}

bool fitsCp1252(const std::string& text) {
    return isAscii(text) || utf8FromCp1252(cp1252FromUtf8(text)) == text;
}

} // namespace nv
