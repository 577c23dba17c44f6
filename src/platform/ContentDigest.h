#pragma once

#include <cstddef>
#include <cstdint>

namespace nv {

// A 64-bit hash of a stream of bytes fed in pieces of any size (the XXH64 function, seed 0).
// Fast enough to run beside a copy without slowing it; not meant to withstand intent.
class Hash64 {
public:
    void add(const char* bytes, std::size_t size);
    std::uint64_t value() const;

private:
    std::uint64_t lanes_[4] = {0x9E3779B185EBCA87ull + 0xC2B2AE3D27D4EB4Full, 0xC2B2AE3D27D4EB4Full,
                               0, 0 - 0x9E3779B185EBCA87ull};
    std::uint64_t total_ = 0;
    unsigned char pending_[32] = {};
    std::size_t pendingSize_ = 0;
};

// What the bytes of a copy come to: their count, a hash of them all, and the hashes of their
// first and last blocks, which the check at the end of a backup reads again.
struct ContentDigest {
    std::uint64_t size = 0;
    std::uint64_t whole = 0;
    std::uint64_t first = 0;
    std::uint64_t last = 0;
    friend bool operator==(const ContentDigest&, const ContentDigest&) = default;
};

// The blocks a digest is made of; a multiple of every sector size, so that a read that passes
// the machine's cache can start at any of them.
inline constexpr std::size_t kDigestBlock = std::size_t{4} << 10;

// Digests bytes as they pass, each hashed once: per block, and the whole over the blocks' hashes.
class Digester {
public:
    void add(const char* bytes, std::size_t size);
    ContentDigest digest() const;

private:
    Hash64 whole_;
    Hash64 block_;
    std::uint64_t size_ = 0;
    std::uint64_t first_ = 0;
    std::uint64_t lastFull_ = 0;
};

// The hash of one block on its own, as a digest takes it.
std::uint64_t blockHash(const char* bytes, std::size_t size);
// Where the last block of size bytes begins; 0 for no bytes.
std::uint64_t lastBlockStart(std::uint64_t size);

} // namespace nv
