#pragma once

#include <cstdint>
#include <string>

namespace nvtest {

// Bytes no file system can squeeze, no block like another, from state (not 0), which goes on.
inline void fillNoise(char* bytes, std::size_t size, std::uint64_t& state) {
    for (std::size_t i = 0; i < size; ++i) {
        state ^= state << 13;
        state ^= state >> 7;
        state ^= state << 17;
        bytes[i] = static_cast<char>(state);
    }
}

inline std::string noise(std::size_t size, std::uint64_t seed) {
    std::string bytes(size, '\0');
    fillNoise(bytes.data(), size, seed);
    return bytes;
}

} // namespace nvtest
