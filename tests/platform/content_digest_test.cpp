// The digest a copy takes of its source and compares with what the medium gives back: any byte
// changed, moved, added or lost must show, and the quick look at the first and last block must
// find what the copy saw there.
#include "platform/ContentDigest.h"
#include "support/Noise.h"

#include <gtest/gtest.h>

#include <string>
#include <type_traits>
#include <vector>

using namespace nv;

namespace {

// What a hasher comes to when fed the bytes in pieces of one size.
template <class Hasher> auto fedIn(const std::string& bytes, std::size_t piece = 1 << 20) {
    Hasher hasher;
    for (std::size_t at = 0; at < bytes.size(); at += piece)
        hasher.add(bytes.data() + at, std::min(piece, bytes.size() - at));
    if constexpr (std::is_same_v<Hasher, Hash64>)
        return hasher.value();
    else
        return hasher.digest();
}

TEST(ContentDigest, IsTheSameInAnyPiecesAndTheEndsAreTheBlocksAReadBackFinds) {
    // The hash is the well-known one, whatever pieces it is fed in.
    for (std::size_t piece : {1u, 3u, 33u, 64u})
        EXPECT_EQ(fedIn<Hash64>("Nobody inspects the spammish repetition", piece),
                  0xFBCEA83C8A378BF1ull);
    const std::size_t block = kDigestBlock;
    // Blocks that differ from each other, so that blocks moved about do not look alike.
    for (std::size_t size : {std::size_t{0}, std::size_t{1}, block - 1, block, block + 1, 3 * block,
                             3 * block + 777}) {
        SCOPED_TRACE(size);
        const std::string bytes = nvtest::noise(size, 2463534242u);
        const ContentDigest digest = fedIn<Digester>(bytes);
        // Reads of any size come to the same digest, as the copy's and the read-back's do.
        for (std::size_t piece : {std::size_t{1000}, block, block + 3})
            EXPECT_EQ(fedIn<Digester>(bytes, piece), digest) << piece;
        EXPECT_EQ(digest.size, size);
        const std::size_t last = lastBlockStart(size);
        EXPECT_EQ(digest.first, blockHash(bytes.data(), std::min(size, block)));
        EXPECT_EQ(digest.last, blockHash(bytes.data() + last, size - last));
    }

    const std::string bytes = nvtest::noise(3 * block + 777, 2463534242u);
    const ContentDigest digest = fedIn<Digester>(bytes);
    std::vector<std::pair<const char*, std::string>> others;
    for (std::size_t at : {std::size_t{0}, block - 1, block, 2 * block + 5, bytes.size() - 1}) {
        others.emplace_back("a flipped byte", bytes);
        others.back().second[at] ^= 0x10;
    }
    std::string swapped = bytes;
    std::swap_ranges(swapped.begin() + block, swapped.begin() + 2 * block, swapped.begin());
    others.emplace_back("two blocks swapped", swapped);
    others.emplace_back("a byte more", bytes + '\0');
    others.emplace_back("a byte less", bytes.substr(0, bytes.size() - 1));
    for (const auto& [what, other] : others)
        EXPECT_NE(fedIn<Digester>(other).whole, digest.whole) << what;
    // The ends alone see what lands on the start of a file, as a medium that wraps around does.
    EXPECT_NE(fedIn<Digester>(others[0].second).first, digest.first);
    EXPECT_NE(fedIn<Digester>(others[4].second).last, digest.last);
}

} // namespace
