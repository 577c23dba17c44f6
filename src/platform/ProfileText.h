#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace nv {

// The text of a profile file in memory: [section] headers and key=value lines, in Windows-1252
// or in UTF-8. Lines end in CR LF, LF or a lone CR. Names match without regard to case, the
// first of equal names counts, and every line keeps its bytes and its own line end, so a file
// renders back as it was read except for the keys that were set. Nothing here reads or writes
// a disk.
class ProfileText {
public:
    ProfileText() { parse(""); }
    explicit ProfileText(const std::string& bytes, bool utf8 = false) : utf8_(utf8) {
        parse(bytes);
    }

    void parse(const std::string& bytes);
    // Reads the bytes anew as UTF-8 (true) or Windows-1252, which decides how names fold.
    void parse(const std::string& bytes, bool utf8) {
        utf8_ = utf8;
        parse(bytes);
    }
    std::string render() const;

    // The value of key in section, blanks and one pair of quotes around it stripped, up to a
    // NUL; nothing when the section or the key is not there.
    std::optional<std::string> find(const std::string& section, const std::string& key) const;
    // Replaces the value of key where it stands, or adds the key at the end of its section (a new
    // section at the end of the text); true when the text changed.
    bool set(const std::string& section, const std::string& key, const std::string& value);

private:
    enum class Eol : uint8_t { None, Lf, CrLf, Cr };

    struct Line {
        std::string text; // without its line end
        Eol eol = Eol::CrLf;
    };

    struct Section {
        bool hasHeader = false; // false only for the lines above the first header
        Line header;
        std::vector<Line> lines;
        std::unordered_map<std::string, uint32_t> keys; // folded key -> first line with it
    };

    void add(Line line);
    Line* lastLine();
    std::string fold(std::string_view name) const;

    bool utf8_ = false;

    std::vector<Section> sections_;
    std::unordered_map<std::string, uint32_t> index_; // folded name -> first section with it
};

} // namespace nv
