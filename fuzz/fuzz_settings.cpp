// Fuzzes the settings file: the input is the file as found on disk. Its own sections, keys and
// values are read, written back in other combinations, once key by key and once in a batch,
// and read again, by a store that keeps its cache across inputs and by a fresh one; the text
// model meets the same writes in memory. The file may come in Windows-1252, UTF-8 or UTF-16.

#include "FuzzFolder.h"

#include "platform/Cp1252.h"
#include "platform/ProfileDocument.h"
#include "platform/ProfileStore.h"
#include "platform/Utf8.h"
#include "platform/posix/DriveTable.h"
#include "platform/posix/PosixProfileStore.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

constexpr std::size_t kMaxPairs = 8;
constexpr std::size_t kMaxWrites = 6;
// A fallback no file holds: a read that gives it back found nothing.
const std::string kMissing = "\x01missing";

std::string gSingle;  // drive form of the file written key by key
std::string gBatched; // and of the one written in a batch
std::string gSingleNative;
std::string gBatchedNative;

struct Pair {
    std::string section; // UTF-8, as the program passes names
    std::string key;
};

struct Write {
    Pair at;
    std::string value;
};

std::string_view trimmed(std::string_view s) {
    while (!s.empty() && (s.front() == ' ' || s.front() == '\t'))
        s.remove_prefix(1);
    while (!s.empty() && (s.back() == ' ' || s.back() == '\t'))
        s.remove_suffix(1);
    return s;
}

// Every byte of the code page must come back from UTF-8 as it was, or a name with an accent
// would not find its own key again.
std::string toUtf8(std::string_view bytes, bool cp1252) {
    if (!cp1252)
        return std::string(bytes);
    std::string utf8 = nv::utf8FromCp1252(std::string(bytes));
    NVFUZZ_CHECK(nv::cp1252FromUtf8(utf8) == bytes, std::string(bytes));
    return utf8;
}

std::size_t characters(const std::string& utf8) {
    std::size_t n = 0;
    for (std::size_t i = 0; i < utf8.size(); ++n)
        nv::decodeUtf8(utf8, i);
    return n;
}

// Names and values as a reader would pick them out of the text; only where to write and what,
// not what the store must answer.
void scan(const std::string& file, std::vector<Pair>& pairs, std::vector<std::string>& values,
          std::vector<std::string>& sections) {
    const nv::ProfileCharset charset = nv::charsetOf(file);
    const bool cp1252 = charset == nv::ProfileCharset::Cp1252;
    const std::string text =
        charset == nv::ProfileCharset::Utf16Le || charset == nv::ProfileCharset::Utf16Be
            ? nv::utf8FromUtf16(file, charset == nv::ProfileCharset::Utf16Be)
            : file;
    std::string section;
    bool inSection = false;
    std::size_t pos = 0;
    while (pos < text.size()) {
        std::size_t end = text.find_first_of("\r\n", pos);
        std::string_view line(text.data() + pos,
                              (end == std::string::npos ? text.size() : end) - pos);
        pos = end == std::string::npos ? text.size() : end + 1;
        std::string_view t = trimmed(line);
        if (!t.empty() && t.front() == '[' && t.find(']') != std::string_view::npos) {
            section = toUtf8(trimmed(t.substr(1, t.find(']') - 1)), cp1252);
            inSection = true;
            if (sections.size() < kMaxPairs)
                sections.push_back(section);
            continue;
        }
        std::size_t eq = line.find('=');
        if (eq == std::string_view::npos)
            continue;
        if (values.size() < kMaxPairs)
            values.push_back(toUtf8(line.substr(eq + 1), cp1252));
        if (inSection && pairs.size() < kMaxPairs)
            pairs.push_back({section, toUtf8(trimmed(line.substr(0, eq)), cp1252)});
    }
}

bool hasAny(const std::string& s, const char* bytes) {
    return s.find_first_of(std::string_view(bytes, 3)) != std::string::npos;
}

// A write whose value must read back exactly as written: names that form their own header
// and key line, a value without blanks or quotes around it, all in valid UTF-8.
bool readsBack(const Write& w) {
    const std::string& s = w.at.section;
    const std::string& k = w.at.key;
    const std::string& v = w.value;
    for (const std::string* text : {&s, &k, &v})
        if (hasAny(*text, "\r\n\0") || !nv::isValidUtf8(*text))
            return false;
    if (s.find(']') != std::string::npos || trimmed(s) != s || k.find('=') != std::string::npos ||
        trimmed(k) != k || (!k.empty() && k.front() == '['))
        return false;
    if (trimmed(v) != v || characters(v) > 254)
        return false;
    return !(v.size() >= 2 && (v.front() == '"' || v.front() == '\'') && v.back() == v.front());
}

std::string read(nv::ProfileStore& store, const Pair& p, const std::string& file,
                 std::size_t size = 255) {
    return store.getString(p.section, p.key, kMissing, size, file);
}

// The stores find files through this table; S: is the only way in.
nv::DriveTable& drives() {
    static nv::DriveTable table([] {
        nv::DriveTable::Options o;
        o.drivesVariable = "S=" + nvfuzz::fuzzRoot();
        o.scanMounts = false;
        return o;
    }());
    return table;
}

nv::PosixProfileStore& cachedStore() {
    // Lives across inputs, so its cache meets files changed behind its back.
    static nv::PosixProfileStore store(drives());
    return store;
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    const std::string& root = nvfuzz::fuzzRoot();
    auto drive = drives().find('S');
    if (!drive || drive->root != root)
        nvfuzz::fail("drive S: is not the fuzzing folder", root);
    gSingle = "S:\\single.ini";
    gBatched = "S:\\batched.ini";
    gSingleNative = root + "/single.ini";
    gBatchedNative = root + "/batched.ini";
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    const std::string& root = nvfuzz::fuzzRoot();
    nvfuzz::writeBytes(gSingleNative, text);
    nvfuzz::writeBytes(gBatchedNative, text);

    std::vector<Pair> pairs;
    std::vector<std::string> values;
    std::vector<std::string> sections;
    scan(text, pairs, values, sections);

    nv::PosixProfileStore& cached = cachedStore();
    nv::PosixProfileStore fresh(drives());
    std::vector<std::string> before;
    for (const Pair& p : pairs) {
        before.push_back(read(cached, p, gSingle));
        NVFUZZ_CHECK(before.back() == read(fresh, p, gSingle), p.section + "/" + p.key);
    }
    // At most size-1 characters, and whatever the file, valid UTF-8 for the program.
    if (!pairs.empty()) {
        std::size_t cut = size % 8;
        std::string part = read(cached, pairs.front(), gSingle, cut);
        NVFUZZ_CHECK(cut == 0 ? part.empty() : characters(part) < cut, part);
        NVFUZZ_CHECK(nv::isValidUtf8(read(cached, pairs.front(), gSingle)), part);
    }

    // Values of one line go to the key of another, a key new to its section, a new section,
    // and values that sit on the edge of what the file can hold.
    static const std::string kEdgeValues[] = {
        "",
        " ",
        "C:\\Data\\Norvale\\",
        "\"17-11-2026\"",
        "Donn\xC3\xA9"
        "es \xE2\x82\xAC",
        "\xE4\xB8\xAD",
        std::string(300, 'x'),
        "a]b",
        "=",
        "[x]",
        "line\r\nbreak",
        std::string("nul\0byte", 8),
    };
    std::vector<Write> writes;
    const std::string& edge = kEdgeValues[size % std::size(kEdgeValues)];
    for (std::size_t i = 0; i < pairs.size() && writes.size() < kMaxWrites - 3; ++i)
        writes.push_back({pairs[i], values.empty() ? edge : values[(i + 1) % values.size()]});
    std::string someSection = sections.empty() ? "Basic settings" : sections.back();
    std::string someValue = values.empty() ? edge : values.front();
    writes.push_back({{someSection, "BackUpfile" + std::to_string(size)}, someValue});
    writes.push_back({{pairs.empty() ? "Nieuw" : pairs.back().key, "Sleutel"}, edge});
    if (!pairs.empty())
        writes.push_back({pairs.front(), edge});

    // The text model alone, in memory, meets the same writes: it renders what it read byte for
    // byte, tells whether a store changed the text, and answers as the text it renders reads.
    nv::ProfileDocument model(text);
    NVFUZZ_CHECK(model.render() == text, text);
    const nv::ProfileCharset charset = model.charset();
    std::vector<std::string> backs;
    bool allReadBack = true;
    for (const Write& w : writes) {
        const std::string was = model.render();
        const bool changed = model.set(w.at.section, w.at.key, w.value);
        const std::string now = model.render();
        NVFUZZ_CHECK(changed == (now != was), w.value);
        NVFUZZ_CHECK(model.find(w.at.section, w.at.key) ==
                         nv::ProfileDocument(now).find(w.at.section, w.at.key),
                     w.at.key);
        // A file keeps its character set; only Windows-1252 may give way to UTF-8.
        NVFUZZ_CHECK(nv::charsetOf(now) == charset ||
                         (charset == nv::ProfileCharset::Cp1252 &&
                          nv::charsetOf(now) == nv::ProfileCharset::Utf8),
                     now);
        NVFUZZ_CHECK(cached.writeString(w.at.section, w.at.key, w.value, gSingle), w.value);
        std::string back = read(cached, w.at, gSingle);
        NVFUZZ_CHECK(back == read(fresh, w.at, gSingle), w.at.section + "/" + w.at.key);
        backs.push_back(back);
        if (readsBack(w))
            NVFUZZ_CHECK(back == w.value, w.value + " read back as " + back);
        else
            allReadBack = false;
    }
    // Writing keys leaves every other key as it was: each now holds its old value or one that
    // was written.
    if (allReadBack) {
        for (std::size_t i = 0; i < pairs.size(); ++i) {
            std::string now = read(cached, pairs[i], gSingle);
            bool known = now == before[i];
            for (const std::string& back : backs)
                known = known || now == back;
            NVFUZZ_CHECK(known, pairs[i].key + ": " + before[i] + " became " + now);
        }
    }
    // A second write of the same value changes nothing on disk, unless the first one made a
    // line that reads as something else.
    const Write& last = writes.back();
    if (readsBack(last)) {
        std::string bytes = nvfuzz::readBytes(gSingleNative);
        NVFUZZ_CHECK(cached.writeString(last.at.section, last.at.key, last.value, gSingle),
                     last.value);
        NVFUZZ_CHECK(nvfuzz::readBytes(gSingleNative) == bytes, last.value);
    }

    {
        nv::ProfileBatch batch(cached);
        for (std::size_t i = 0; i < writes.size(); ++i) {
            const Write& w = writes[i];
            cached.writeString(w.at.section, w.at.key, w.value, gBatched);
            // Reads inside the batch see what it will store.
            NVFUZZ_CHECK(read(cached, w.at, gBatched) == backs[i], w.value);
        }
    }
    // A batch leaves exactly the bytes of the single writes, and so does the model.
    std::string single = nvfuzz::readBytes(gSingleNative);
    NVFUZZ_CHECK(model.render() == single, single);
    NVFUZZ_CHECK(nvfuzz::readBytes(gBatchedNative) == single, single);

    // What the cache answers is what the file on disk says.
    nv::PosixProfileStore after(drives());
    for (const Pair& p : pairs)
        NVFUZZ_CHECK(read(cached, p, gBatched) == read(after, p, gSingle), p.key);
    for (const Write& w : writes)
        NVFUZZ_CHECK(read(cached, w.at, gBatched) == read(after, w.at, gSingle), w.at.key);

    // Every store went through a temporary file, and none is left.
    for (const std::string& name : nvfuzz::namesIn(root))
        NVFUZZ_CHECK(name == "single.ini" || name == "batched.ini", name);
    return 0;
}
