#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace nv {

// Case folding as the home platform's file names know it: ASCII and Latin-1 letters in UTF-8
// text; a byte that starts no valid sequence stands for itself.

// Upper case of the text, for compares that ignore case.
std::string upperCase(const std::string& text);
// The text's code points in upper case, for matching letter by letter.
std::u32string upperCodePoints(const std::string& text);
// As upperCase(a) == upperCase(b), letter by letter, without making either.
bool equalsIgnoringCase(std::string_view a, std::string_view b);
// Sorts names without regard to case; names that differ in case alone keep one fixed order.
void sortIgnoringCase(std::vector<std::string>& names);

} // namespace nv
