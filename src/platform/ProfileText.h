#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace nv {

// The text of a profile file in memory: [section] headers and key=value lines, all in
// Windows-1252. Names match without regard to case, the first of equal names counts, and every
// line keeps its bytes and its own line end, so a file renders back as it was read except for
// the keys that were set. Nothing here reads or writes a disk.
class ProfileText {
public:
    ProfileText() { parse(""); }
    explicit ProfileText(const std::string& bytes) { parse(bytes); }

    void parse(const std::string& bytes);
    std::string render() const;

    // The value of key in section, blanks and one pair of quotes around it stripped, up to a
    // NUL; nothing when the section or the key is not there.
    std::optional<std::string> find(const std::string& section, const std::string& key) const;
    // Replaces the value of key where it stands, or adds the key at the end of its section (a new
    // section at the end of the text); true when the text changed.
    bool set(const std::string& section, const std::string& key, const std::string& value);

private:
    enum class Eol : uint8_t { None, Lf, CrLf };

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

    std::vector<Section> sections_;
    std::unordered_map<std::string, uint32_t> index_; // folded name -> first section with it
};

} // namespace nv
