#include "platform/ProfileDocument.h"

#include "platform/Cp1252.h"
#include "platform/Utf8.h"

namespace nv {

namespace {

bool isUtf16(ProfileCharset charset) {
    return charset == ProfileCharset::Utf16Le || charset == ProfileCharset::Utf16Be;
}

} // namespace

ProfileCharset charsetOf(const std::string& bytes) {
    if (bytes.size() >= 2 && bytes[0] == '\xFF' && bytes[1] == '\xFE')
        return ProfileCharset::Utf16Le;
    if (bytes.size() >= 2 && bytes[0] == '\xFE' && bytes[1] == '\xFF')
        return ProfileCharset::Utf16Be;
    return isValidUtf8(bytes) ? ProfileCharset::Utf8 : ProfileCharset::Cp1252;
}

void ProfileDocument::parse(const std::string& bytes) {
    charset_ = charsetOf(bytes);
    oddByte_.clear();
    if (isUtf16(charset_)) {
        // The mark becomes U+FEFF in front of the first line, and goes back with it.
        if (bytes.size() % 2 == 1)
            oddByte_ = bytes.substr(bytes.size() - 1);
        text_.parse(utf8FromUtf16(bytes, charset_ == ProfileCharset::Utf16Be), true);
    } else {
        text_.parse(bytes, !inCp1252());
    }
}

std::string ProfileDocument::render() const {
    if (isUtf16(charset_))
        return utf16FromUtf8(text_.render(), charset_ == ProfileCharset::Utf16Be) + oddByte_;
    std::string bytes = text_.render();
    // A store may have replaced the only line that was no UTF-8; read again, the file would
    // then be taken for UTF-8 and its other letters would change. It is written in UTF-8.
    if (inCp1252() && charsetOf(bytes) == ProfileCharset::Utf8)
        return utf8FromCp1252(bytes);
    return bytes;
}

std::optional<std::string> ProfileDocument::find(const std::string& section,
                                                 const std::string& key) const {
    if (inCp1252()) {
        // A name the code page cannot hold cannot stand in the file.
        if (!fitsCp1252(section) || !fitsCp1252(key))
            return std::nullopt;
        auto value = text_.find(cp1252FromUtf8(section), cp1252FromUtf8(key));
        if (value)
            return utf8FromCp1252(*value);
        return value;
    }
    auto value = text_.find(validUtf8(section), validUtf8(key));
    if (value)
        return validUtf8(*value);
    return value;
}

bool ProfileDocument::set(const std::string& section, const std::string& key,
                          const std::string& value) {
    const std::string s = validUtf8(section);
    const std::string k = validUtf8(key);
    const std::string v = validUtf8(value);
    bool converted = false;
    if (inCp1252()) {
        if (fitsCp1252(s) && fitsCp1252(k) && fitsCp1252(v))
            return text_.set(cp1252FromUtf8(s), cp1252FromUtf8(k), cp1252FromUtf8(v));
        text_.parse(utf8FromCp1252(text_.render()), true);
        charset_ = ProfileCharset::Utf8;
        converted = true;
    }
    return text_.set(s, k, v) || converted;
}

} // namespace nv
