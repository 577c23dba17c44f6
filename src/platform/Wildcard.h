#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace nv {

// Matches a file name against a pattern with * and ? in the home platform's sense, without
// regard to case: "*.*" matches every name, also one without a dot; "*." names without a dot.
bool wildcardMatch(const std::string& pattern, const std::string& name);
bool hasWildcards(const std::string& text);

// Upper case of ASCII and Latin-1 letters in UTF-8 text, for compares that ignore case.
std::string upperCase(const std::string& text);
// As upperCase(a) == upperCase(b), letter by letter, without making either.
bool equalsIgnoringCase(std::string_view a, std::string_view b);
// Sorts names without regard to case; names that differ in case alone keep one fixed order.
void sortIgnoringCase(std::vector<std::string>& names);

} // namespace nv
