#pragma once

#include "platform/ProfileText.h"

#include <cstdint>
#include <optional>
#include <string>

namespace nv {

// How the bytes of a profile file are to be read: UTF-8 when they are valid UTF-8, UTF-16 after
// its byte-order mark, else Windows-1252 as the home platform writes it.
enum class ProfileCharset : uint8_t { Utf8, Cp1252, Utf16Le, Utf16Be };

ProfileCharset charsetOf(const std::string& bytes);

// A profile file with the character set it came in. Names and values go in and out as UTF-8;
// lines that no store touched render back byte for byte, and a file renders in its own set.
// A value that a Windows-1252 file cannot hold turns the whole file into UTF-8, which keeps
// every character of it.
class ProfileDocument {
public:
    ProfileDocument() = default;
    explicit ProfileDocument(const std::string& bytes) { parse(bytes); }

    void parse(const std::string& bytes);
    std::string render() const;
    ProfileCharset charset() const { return charset_; }

    std::optional<std::string> find(const std::string& section, const std::string& key) const;
    // True when the file's text changed.
    bool set(const std::string& section, const std::string& key, const std::string& value);

private:
    bool inCp1252() const { return charset_ == ProfileCharset::Cp1252; }

    ProfileCharset charset_ = ProfileCharset::Utf8;
    std::string oddByte_; // the last byte of a UTF-16 file of odd length
    ProfileText text_{"", true};
};

} // namespace nv
