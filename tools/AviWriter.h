#pragma once
// An uncompressed AVI clip of 8-bit palette frames, the form the Win32 Animation control plays.
#include <cstdint>
#include <vector>

struct AviClip {
    int width = 0;
    int height = 0;
    int microsecondsPerFrame = 0;
    // 0xRRGGBB (the alpha byte is ignored); at most 256 colours.
    std::vector<uint32_t> palette;
    // One palette index per pixel, rows from the top, `width` bytes a row.
    std::vector<std::vector<uint8_t>> frames;
};

// The bytes of the whole RIFF file: one video stream, every frame a key frame, and an index.
std::vector<uint8_t> aviFile(const AviClip& clip);
