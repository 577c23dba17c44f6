#pragma once

#include <string>

namespace nv {

// Matches a file name against a pattern with * and ? in the home platform's sense, without
// regard to case: "*.*" matches every name, also one without a dot; "*." names without a dot.
bool wildcardMatch(const std::string& pattern, const std::string& name);
bool hasWildcards(const std::string& text);

} // namespace nv
