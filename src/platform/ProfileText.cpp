#include "platform/ProfileText.h"

#include "platform/CaseFold.h"

#include <string_view>

namespace nv {

namespace {

bool isBlank(char c) {
    return c == ' ' || c == '\t';
}

std::string_view trim(std::string_view s) {
    while (!s.empty() && isBlank(s.front()))
        s.remove_prefix(1);
    while (!s.empty() && isBlank(s.back()))
        s.remove_suffix(1);
    return s;
}

bool isBlankLine(const std::string& text) {
    return trim(text).empty();
}

// Upper case in Windows-1252, so that é and É, š and Š name the same key.
unsigned char foldByte(unsigned char c) {
    if (c >= 'a' && c <= 'z')
        return static_cast<unsigned char>(c - 32);
    if (c >= 0xE0 && c <= 0xFE && c != 0xF7)
        return static_cast<unsigned char>(c - 32);
    if (c == 0x9A || c == 0x9C || c == 0x9E)
        return static_cast<unsigned char>(c - 0x10);
    if (c == 0xFF)
        return 0x9F;
    return c;
}

// The name of a section header line, or nothing when the line is not one.
bool headerName(std::string_view text, std::string_view& name) {
    std::string_view t = trim(text);
    if (t.empty() || t.front() != '[')
        return false;
    std::size_t close = t.find(']');
    if (close == std::string_view::npos)
        return false;
    name = trim(t.substr(1, close - 1));
    return true;
}

bool keyName(std::string_view text, std::string_view& name) {
    std::size_t eq = text.find('=');
    if (eq == std::string_view::npos)
        return false;
    name = trim(text.substr(0, eq));
    return true;
}

// Whether the lines a store writes parse back as that section and key, so the index holds.
bool readsBackAsWritten(const std::string& section, const std::string& key,
                        const std::string& value) {
    for (const std::string* text : {&section, &key, &value})
        if (text->find_first_of("\r\n") != std::string::npos)
            return false;
    // "[a=b]" is read as a header, so the whole line counts, not the key alone.
    std::string_view name;
    if (section.find(']') != std::string::npos || trim(section) != section ||
        key.find('=') != std::string::npos || trim(key) != key ||
        headerName(key + "=" + value, name))
        return false;
    return true;
}

const std::string_view kUtf8Mark = "\xEF\xBB\xBF";

} // namespace

std::string ProfileText::fold(std::string_view name) const {
    std::string out(name);
    if (utf8_)
        return upperCase(out);
    for (char& c : out)
        c = static_cast<char>(foldByte(static_cast<unsigned char>(c)));
    return out;
}

void ProfileText::parse(const std::string& text) {
    sections_.clear();
    index_.clear();
    sections_.emplace_back();
    std::size_t pos = 0;
    while (pos < text.size()) {
        Line line;
        std::size_t end = text.find_first_of("\r\n", pos);
        if (end == std::string::npos) {
            line.text = text.substr(pos);
            line.eol = Eol::None;
            pos = text.size();
        } else {
            line.text = text.substr(pos, end - pos);
            if (text[end] == '\n') {
                line.eol = Eol::Lf;
                pos = end + 1;
            } else if (end + 1 < text.size() && text[end + 1] == '\n') {
                line.eol = Eol::CrLf;
                pos = end + 2;
            } else {
                line.eol = Eol::Cr;
                pos = end + 1;
            }
        }
        add(std::move(line));
    }
}

void ProfileText::add(Line line) {
    std::string_view view = line.text;
    if (sections_.size() == 1 && sections_[0].lines.empty() && view.starts_with(kUtf8Mark))
        view.remove_prefix(kUtf8Mark.size()); // an editor's mark, not part of the name
    std::string_view name;
    if (headerName(view, name)) {
        index_.emplace(fold(name), static_cast<uint32_t>(sections_.size()));
        Section& s = sections_.emplace_back();
        s.hasHeader = true;
        s.header = std::move(line);
        return;
    }
    Section& s = sections_.back();
    if (s.hasHeader && keyName(view, name))
        s.keys.emplace(fold(name), static_cast<uint32_t>(s.lines.size()));
    s.lines.push_back(std::move(line));
}

std::string ProfileText::render() const {
    std::size_t total = 0;
    for (const Section& s : sections_) {
        total += s.header.text.size() + 2;
        for (const Line& l : s.lines)
            total += l.text.size() + 2;
    }
    std::string out;
    out.reserve(total);
    auto put = [&out](const Line& l) {
        out += l.text;
        if (l.eol == Eol::CrLf)
            out += "\r\n";
        else if (l.eol == Eol::Lf)
            out += '\n';
        else if (l.eol == Eol::Cr)
            out += '\r';
    };
    for (const Section& s : sections_) {
        if (s.hasHeader)
            put(s.header);
        for (const Line& l : s.lines)
            put(l);
    }
    return out;
}

ProfileText::Line* ProfileText::lastLine() {
    for (auto s = sections_.rbegin(); s != sections_.rend(); ++s) {
        if (!s->lines.empty())
            return &s->lines.back();
        if (s->hasHeader)
            return &s->header;
    }
    return nullptr;
}

std::optional<std::string> ProfileText::find(const std::string& section,
                                             const std::string& key) const {
    auto s = index_.find(fold(section));
    if (s == index_.end())
        return std::nullopt;
    const Section& sec = sections_[s->second];
    auto k = sec.keys.find(fold(key));
    if (k == sec.keys.end())
        return std::nullopt;
    std::string_view v = sec.lines[k->second].text;
    v = v.substr(v.find('=') + 1);
    v = v.substr(0, v.find('\0'));
    v = trim(v);
    if (v.size() >= 2 && (v.front() == '"' || v.front() == '\'') && v.back() == v.front())
        v = v.substr(1, v.size() - 2);
    return std::string(v);
}

bool ProfileText::set(const std::string& section, const std::string& key,
                      const std::string& value) {
    bool changed = true;
    auto s = index_.find(fold(section));
    if (s == index_.end()) {
        if (Line* last = lastLine(); last && last->eol == Eol::None)
            last->eol = Eol::CrLf;
        index_.emplace(fold(section), static_cast<uint32_t>(sections_.size()));
        Section& sec = sections_.emplace_back();
        sec.hasHeader = true;
        sec.header.text = "[" + section + "]";
        sec.lines.push_back(Line{key + "=" + value, Eol::CrLf});
        sec.keys.emplace(fold(key), 0);
    } else {
        Section& sec = sections_[s->second];
        auto k = sec.keys.find(fold(key));
        if (k != sec.keys.end()) {
            // The part up to '=' stays, so the key keeps its letters.
            Line& line = sec.lines[k->second];
            std::string text = line.text.substr(0, line.text.find('=') + 1) + value;
            changed = text != line.text || line.eol != Eol::CrLf;
            line.text = std::move(text);
            line.eol = Eol::CrLf;
        } else {
            // Blank lines at the end of a section keep separating it from the next one.
            std::size_t at = sec.lines.size();
            while (at > 0 && isBlankLine(sec.lines[at - 1].text))
                --at;
            Line& before = at > 0 ? sec.lines[at - 1] : sec.header;
            if (before.eol == Eol::None)
                before.eol = Eol::CrLf;
            sec.lines.insert(sec.lines.begin() + static_cast<std::ptrdiff_t>(at),
                             Line{key + "=" + value, Eol::CrLf});
            sec.keys.emplace(fold(key), static_cast<uint32_t>(at));
        }
    }
    if (!readsBackAsWritten(section, key, value))
        parse(render());
    return changed;
}

} // namespace nv
