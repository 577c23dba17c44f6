#include "AviWriter.h"

#include <algorithm>
#include <cstddef>
#include <numeric>

namespace {

constexpr uint32_t kHasIndex = 0x10; // AVIF_HASINDEX
constexpr uint32_t kKeyFrame = 0x10; // AVIIF_KEYFRAME
constexpr uint32_t kNoQuality = ~0u; // the stream's quality is not known

class RiffWriter {
public:
    void u16(uint32_t value) {
        bytes.push_back(static_cast<uint8_t>(value & 0xff));
        bytes.push_back(static_cast<uint8_t>((value >> 8) & 0xff));
    }
    void u32(uint32_t value) {
        u16(value & 0xffff);
        u16(value >> 16);
    }
    void fourCC(const char* id) { bytes.insert(bytes.end(), id, id + 4); }
    void append(const std::vector<uint8_t>& data) {
        bytes.insert(bytes.end(), data.begin(), data.end());
    }

    // Returns where the chunk's data starts; close() writes its size there and pads it to a word.
    std::size_t open(const char* id) {
        fourCC(id);
        u32(0);
        return bytes.size();
    }
    std::size_t openList(const char* id, const char* type) {
        const std::size_t start = open(id);
        fourCC(type);
        return start;
    }
    void close(std::size_t start) {
        const std::size_t size = bytes.size() - start;
        for (int i = 0; i < 4; ++i)
            bytes[start - 4 + static_cast<std::size_t>(i)] =
                static_cast<uint8_t>((size >> (8 * i)) & 0xff);
        if (size % 2 != 0)
            bytes.push_back(0);
    }

    std::vector<uint8_t> bytes;
};

// A DIB's rows go from the bottom up, each padded to four bytes.
std::vector<uint8_t> dibRows(const AviClip& clip, const std::vector<uint8_t>& frame) {
    const std::size_t width = static_cast<std::size_t>(clip.width);
    const std::size_t stride = (width + 3) / 4 * 4;
    std::vector<uint8_t> out(stride * static_cast<std::size_t>(clip.height), 0);
    for (std::size_t row = 0; row < static_cast<std::size_t>(clip.height); ++row) {
        const auto from = frame.begin() + static_cast<std::ptrdiff_t>(row * width);
        std::copy(from, from + static_cast<std::ptrdiff_t>(width),
                  out.end() - static_cast<std::ptrdiff_t>((row + 1) * stride));
    }
    return out;
}

} // namespace

std::vector<uint8_t> aviFile(const AviClip& clip) {
    const uint32_t width = static_cast<uint32_t>(clip.width);
    const uint32_t height = static_cast<uint32_t>(clip.height);
    const uint32_t frameBytes = (width + 3) / 4 * 4 * height;
    const uint32_t frames = static_cast<uint32_t>(clip.frames.size());
    const uint32_t perFrame = static_cast<uint32_t>(clip.microsecondsPerFrame);
    const uint32_t common = std::gcd(perFrame, 1000000u);

    RiffWriter w;
    const std::size_t riff = w.openList("RIFF", "AVI ");
    const std::size_t headers = w.openList("LIST", "hdrl");

    const std::size_t avih = w.open("avih");
    w.u32(perFrame);
    w.u32(static_cast<uint32_t>(uint64_t{frameBytes} * 1000000u / perFrame));
    w.u32(0); // padding granularity
    w.u32(kHasIndex);
    w.u32(frames);
    w.u32(0); // initial frames
    w.u32(1); // streams
    w.u32(frameBytes);
    w.u32(width);
    w.u32(height);
    for (int reserved = 0; reserved < 4; ++reserved)
        w.u32(0);
    w.close(avih);

    const std::size_t stream = w.openList("LIST", "strl");
    const std::size_t strh = w.open("strh");
    w.fourCC("vids");
    w.fourCC("DIB ");
    w.u32(0); // flags
    w.u16(0); // priority
    w.u16(0); // language
    w.u32(0); // initial frames
    w.u32(perFrame / common);
    w.u32(1000000u / common);
    w.u32(0); // start
    w.u32(frames);
    w.u32(frameBytes);
    w.u32(kNoQuality);
    w.u32(0); // sample size: frames vary in size in general
    w.u16(0);
    w.u16(0);
    w.u16(width);
    w.u16(height);
    w.close(strh);

    const std::size_t strf = w.open("strf");
    w.u32(40); // BITMAPINFOHEADER
    w.u32(width);
    w.u32(height);
    w.u16(1);
    w.u16(8);
    w.u32(0); // BI_RGB
    w.u32(frameBytes);
    w.u32(0);
    w.u32(0);
    w.u32(static_cast<uint32_t>(clip.palette.size()));
    w.u32(0);
    for (uint32_t colour : clip.palette)
        w.u32(colour & 0xffffff); // RGBQUAD: blue, green, red, zero
    w.close(strf);
    w.close(stream);
    w.close(headers);

    const std::size_t movi = w.openList("LIST", "movi");
    std::vector<uint32_t> offsets;
    for (const auto& frame : clip.frames) {
        // Offsets in the index count from the list's type, "movi".
        offsets.push_back(static_cast<uint32_t>(w.bytes.size() - movi));
        const std::size_t chunk = w.open("00db");
        w.append(dibRows(clip, frame));
        w.close(chunk);
    }
    w.close(movi);

    const std::size_t index = w.open("idx1");
    for (uint32_t offset : offsets) {
        w.fourCC("00db");
        w.u32(kKeyFrame);
        w.u32(offset);
        w.u32(frameBytes);
    }
    w.close(index);
    w.close(riff);
    return w.bytes;
}
