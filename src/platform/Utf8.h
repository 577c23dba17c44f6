#pragma once

#include <cstddef>
#include <string>

namespace nv {

// Decodes one UTF-8 sequence at text[i] and steps past it; a malformed byte is one U+FFFD.
char32_t decodeUtf8(const std::string& text, std::size_t& i);
void appendUtf8(std::string& out, char32_t c);

bool isAscii(const std::string& text);

bool isValidUtf8(const std::string& text);
// The text with each malformed byte replaced by '?', so that it can join a UTF-8 file.
std::string validUtf8(const std::string& text);
// The first count characters of a UTF-8 text.
std::string firstCharacters(std::string text, std::size_t count);

// UTF-16 bytes (little or big endian) to UTF-8 and back. A lone surrogate is carried through as
// its own three-byte sequence, so that a file read and written again keeps its bytes.
std::string utf8FromUtf16(const std::string& bytes, bool bigEndian);
std::string utf16FromUtf8(const std::string& text, bool bigEndian);

} // namespace nv
