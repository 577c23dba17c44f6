#pragma once

#include <string>
#include <vector>

namespace nvfuzz {

// The private folder of one fuzzing process, a kit's TempFolder made on first use under $TMPDIR
// (or /dev/shm, where a flush costs nothing) and removed at exit. The targets write below it and
// nowhere else.
const std::string& fuzzRoot();

void makeFolder(const std::string& native);
void writeBytes(const std::string& native, const std::string& bytes);
std::string readBytes(const std::string& native);
// Names in a folder, without "." and "..".
std::vector<std::string> namesIn(const std::string& native);
// Removes the entries of folder whose names are not in keep.
void removeAllBut(const std::string& native, const std::vector<std::string>& keep);

// Whether native, as the kernel reads it (up to a NUL), lies at or below folder and has no "."
// or ".." in it that could lead elsewhere.
bool staysBelow(const std::string& native, const std::string& folder);

// Reports a broken invariant and aborts, so that libFuzzer keeps the input.
[[noreturn]] void fail(const char* what, const std::string& detail = "");

} // namespace nvfuzz

#define NVFUZZ_CHECK(condition, detail)                                                            \
    do {                                                                                           \
        if (!(condition))                                                                          \
            ::nvfuzz::fail(#condition, (detail));                                                  \
    } while (false)
