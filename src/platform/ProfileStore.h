#pragma once

#include <cstddef>
#include <string>

namespace nv {

// The profile-file services: [section] / key=value text files, CR LF, in the system's code page
// (Windows-1252 on Windows, UTF-8 on Linux). Strings in and out are UTF-8.
class ProfileStore {
public:
    virtual ~ProfileStore() = default;
    // Value of key in section, blanks and one pair of quotes stripped, at most size-1
    // characters; fallback when the file, section or key is missing.
    virtual std::string getString(const std::string& section, const std::string& key,
                                  const std::string& fallback, std::size_t size,
                                  const std::string& file) = 0;
    // Replaces the key where it stands, or adds it at the end of its section (a new section at
    // the end of the file). On disk when the call returns, unless a batch is open.
    virtual bool writeString(const std::string& section, const std::string& key,
                             const std::string& value, const std::string& file) = 0;
    // Between begin and end, writes may be held and put on disk in one pass at the end; the file
    // then holds exactly what the single writes would have left.
    virtual void beginBatch() {}
    virtual void endBatch() {}
    // Whether a store to file can be made now: the file may be written, or, where it is not
    // there yet, the folder it would be made in.
    virtual bool mayStore(const std::string& file) {
        (void)file;
        return true;
    }
};

// Holds the writes of one operation for a single pass to disk. The outermost batch open is one
// operation of the user, in which a store that fails is told once, not once per key.
class ProfileBatch {
public:
    explicit ProfileBatch(ProfileStore& store) : store_(store) {
        if (depth_++ == 0)
            ++serial_;
        store_.beginBatch();
    }
    ~ProfileBatch() {
        store_.endBatch();
        --depth_;
    }
    ProfileBatch(const ProfileBatch&) = delete;
    ProfileBatch& operator=(const ProfileBatch&) = delete;

    // The outermost batch open now, by a number of its own; 0 when none is.
    static unsigned current() { return depth_ > 0 ? serial_ : 0; }

private:
    ProfileStore& store_;
    inline static int depth_ = 0;
    inline static unsigned serial_ = 0;
};

} // namespace nv
