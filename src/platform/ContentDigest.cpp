#include "platform/ContentDigest.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace nv {

namespace {

constexpr std::uint64_t kPrime1 = 0x9E3779B185EBCA87ull;
constexpr std::uint64_t kPrime2 = 0xC2B2AE3D27D4EB4Full;
constexpr std::uint64_t kPrime3 = 0x165667B19E3779F9ull;
constexpr std::uint64_t kPrime4 = 0x85EBCA77C2B2AE63ull;
constexpr std::uint64_t kPrime5 = 0x27D4EB2F165667C5ull;

std::uint64_t rotl(std::uint64_t x, int r) {
    return (x << r) | (x >> (64 - r));
}

// Little-endian whatever the machine, so that a digest means the same everywhere.
template <typename Word> Word readLittle(const unsigned char* p) {
    Word v;
    if constexpr (std::endian::native == std::endian::little) {
        std::memcpy(&v, p, sizeof v);
    } else {
        v = 0;
        for (int i = sizeof v - 1; i >= 0; --i)
            v = static_cast<Word>((v << 8) | p[i]);
    }
    return v;
}

std::uint64_t read64(const unsigned char* p) {
    return readLittle<std::uint64_t>(p);
}

std::uint32_t read32(const unsigned char* p) {
    return readLittle<std::uint32_t>(p);
}

std::uint64_t mixLane(std::uint64_t lane, std::uint64_t input) {
    return rotl(lane + input * kPrime2, 31) * kPrime1;
}

std::uint64_t merge(std::uint64_t hash, std::uint64_t lane) {
    return (hash ^ mixLane(0, lane)) * kPrime1 + kPrime4;
}

// Takes every whole stripe of 32 bytes at p; returns the count of bytes taken.
std::size_t stripes(std::uint64_t (&lanes)[4], const unsigned char* p, std::size_t size) {
    // In locals, so that the four lanes stay in registers through the loop.
    std::uint64_t v0 = lanes[0], v1 = lanes[1], v2 = lanes[2], v3 = lanes[3];
    std::size_t done = 0;
    for (; size - done >= 32; done += 32) {
        v0 = mixLane(v0, read64(p + done));
        v1 = mixLane(v1, read64(p + done + 8));
        v2 = mixLane(v2, read64(p + done + 16));
        v3 = mixLane(v3, read64(p + done + 24));
    }
    lanes[0] = v0;
    lanes[1] = v1;
    lanes[2] = v2;
    lanes[3] = v3;
    return done;
}

void addHash(Hash64& hash, std::uint64_t value) {
    unsigned char bytes[8];
    for (unsigned char& b : bytes) {
        b = static_cast<unsigned char>(value);
        value >>= 8;
    }
    hash.add(reinterpret_cast<const char*>(bytes), sizeof bytes);
}

} // namespace

void Hash64::add(const char* bytes, std::size_t size) {
    const auto* p = reinterpret_cast<const unsigned char*>(bytes);
    total_ += size;
    if (pendingSize_ + size < 32) {
        if (size != 0)
            std::memcpy(pending_ + pendingSize_, p, size);
        pendingSize_ += size;
        return;
    }
    if (pendingSize_ != 0) {
        std::size_t take = 32 - pendingSize_;
        std::memcpy(pending_ + pendingSize_, p, take);
        stripes(lanes_, pending_, 32);
        p += take;
        size -= take;
        pendingSize_ = 0;
    }
    std::size_t taken = stripes(lanes_, p, size);
    p += taken;
    size -= taken;
    if (size != 0)
        std::memcpy(pending_, p, size);
    pendingSize_ = size;
}

std::uint64_t Hash64::value() const {
    std::uint64_t h;
    if (total_ >= 32) {
        h = rotl(lanes_[0], 1) + rotl(lanes_[1], 7) + rotl(lanes_[2], 12) + rotl(lanes_[3], 18);
        for (std::uint64_t lane : lanes_)
            h = merge(h, lane);
    } else {
        h = kPrime5;
    }
    h += total_;
    const unsigned char* p = pending_;
    std::size_t left = pendingSize_;
    for (; left >= 8; p += 8, left -= 8)
        h = rotl(h ^ mixLane(0, read64(p)), 27) * kPrime1 + kPrime4;
    if (left >= 4) {
        h = rotl(h ^ (static_cast<std::uint64_t>(read32(p)) * kPrime1), 23) * kPrime2 + kPrime3;
        p += 4;
        left -= 4;
    }
    for (; left > 0; ++p, --left)
        h = rotl(h ^ (*p * kPrime5), 11) * kPrime1;
    h ^= h >> 33;
    h *= kPrime2;
    h ^= h >> 29;
    h *= kPrime3;
    h ^= h >> 32;
    return h;
}

void Digester::add(const char* bytes, std::size_t size) {
    while (size > 0) {
        std::size_t take = std::min<std::uint64_t>(size, kDigestBlock - size_ % kDigestBlock);
        block_.add(bytes, take);
        bytes += take;
        size -= take;
        size_ += take;
        if (size_ % kDigestBlock == 0) {
            lastFull_ = block_.value();
            if (size_ == kDigestBlock)
                first_ = lastFull_;
            addHash(whole_, lastFull_);
            block_ = Hash64();
        }
    }
}

ContentDigest Digester::digest() const {
    ContentDigest d;
    d.size = size_;
    const bool partial = size_ % kDigestBlock != 0 || size_ == 0;
    Hash64 whole = whole_;
    if (partial && size_ != 0)
        addHash(whole, block_.value());
    d.whole = whole.value();
    d.first = size_ >= kDigestBlock ? first_ : block_.value();
    d.last = partial ? block_.value() : lastFull_;
    return d;
}

std::uint64_t blockHash(const char* bytes, std::size_t size) {
    Hash64 hash;
    hash.add(bytes, size);
    return hash.value();
}

std::uint64_t lastBlockStart(std::uint64_t size) {
    return size == 0 ? 0 : (size - 1) / kDigestBlock * kDigestBlock;
}

} // namespace nv
