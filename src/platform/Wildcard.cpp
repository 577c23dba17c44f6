#include "platform/Wildcard.h"

#include "platform/CaseFold.h"

namespace nv {

namespace {

// Both sides in upper case already.
bool match(const std::u32string& p, std::size_t pi, const std::u32string& n, std::size_t ni) {
    // Iterative match with one backtrack point for the last '*'.
    std::size_t starP = std::u32string::npos, starN = 0;
    while (ni < n.size()) {
        if (pi < p.size() && (p[pi] == U'?' || p[pi] == n[ni])) {
            ++pi;
            ++ni;
        } else if (pi < p.size() && p[pi] == U'*') {
            starP = pi++;
            starN = ni;
        } else if (starP != std::u32string::npos) {
            pi = starP + 1;
            ni = ++starN;
        } else {
            return false;
        }
    }
    while (pi < p.size() && p[pi] == U'*')
        ++pi;
    return pi == p.size();
}

} // namespace

bool hasWildcards(const std::string& text) {
    return text.find_first_of("*?") != std::string::npos;
}

bool wildcardMatch(const std::string& pattern, const std::string& name) {
    if (pattern == "*.*" || pattern == "*")
        return true;
    std::u32string p = upperCodePoints(pattern);
    std::u32string n = upperCodePoints(name);
    // A pattern ending in a dot asks for names without an extension.
    if (!p.empty() && p.back() == U'.') {
        if (n.find(U'.') != std::u32string::npos)
            return false;
        p.pop_back();
        return match(p, 0, n, 0);
    }
    return match(p, 0, n, 0);
}

} // namespace nv
