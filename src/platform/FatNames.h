#pragma once

#include <optional>
#include <string>

namespace nv {

// Why a FAT or exFAT file system refuses a name that other file systems take.
struct FatRefusal {
    enum Kind { Character, Control, TrailingDot, TrailingBlank };
    Kind kind;
    char character = 0; // the character refused, for Character
};

// The first rule of FAT and exFAT that name (UTF-8) breaks; nothing when it may stand there.
std::optional<FatRefusal> fatRefusal(const std::string& name);

} // namespace nv
