#include "platform/win32/Win32FileSystem.h"

#include "platform/CaseFold.h"
#include "platform/ContentDigest.h"
#include "platform/FailureText.h"
#include "platform/Wildcard.h"
#include "platform/win32/Win32ErrorFailures.h"
#include "platform/win32/Win32Text.h"

#include <windows.h>

#include <atomic>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace nv {

using namespace win32;

namespace {

// A reparse point (a link or a junction) is neither a plain file nor a folder of the drive.
constexpr DWORD kNotPlain = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_HIDDEN |
                            FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_REPARSE_POINT;

// No "insert a disk" box from the system while an empty drive is probed.
class QuietDriveErrors {
public:
    QuietDriveErrors() { SetThreadErrorMode(SEM_FAILCRITICALERRORS, &saved_); }
    ~QuietDriveErrors() { SetThreadErrorMode(saved_, nullptr); }
    QuietDriveErrors(const QuietDriveErrors&) = delete;
    QuietDriveErrors& operator=(const QuietDriveErrors&) = delete;

private:
    DWORD saved_ = 0;
};

// A handle, closed by Close when it goes.
template <BOOL(WINAPI* Close)(HANDLE)> class Handle {
public:
    explicit Handle(HANDLE h) : h_(h) {}
    ~Handle() { close(); }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    HANDLE get() const { return h_; }
    bool valid() const { return h_ != INVALID_HANDLE_VALUE; }
    // Closes it now; false when the close failed.
    bool close() {
        HANDLE h = h_;
        h_ = INVALID_HANDLE_VALUE;
        return h == INVALID_HANDLE_VALUE || Close(h);
    }

private:
    HANDLE h_;
};

using FindHandle = Handle<FindClose>;
using FileHandle = Handle<CloseHandle>;

constexpr DWORD kBuffer = 1 << 20;
constexpr DWORD kBlock = static_cast<DWORD>(kDigestBlock);

// Memory on a page boundary, as reads that pass the system's cache want it.
class PageBuffer {
public:
    explicit PageBuffer(DWORD size)
        : bytes_(static_cast<char*>(
              VirtualAlloc(nullptr, size, MEM_COMMIT | MEM_RESERVE, PAGE_READWRITE))) {
        if (!bytes_)
            throwFailure(GetLastError(), L"");
    }
    ~PageBuffer() { VirtualFree(bytes_, 0, MEM_RELEASE); }
    PageBuffer(const PageBuffer&) = delete;
    PageBuffer& operator=(const PageBuffer&) = delete;
    char* get() const { return bytes_; }

private:
    char* bytes_;
};

// Opens a flushed file to read it back unbuffered: what comes back is what the medium holds,
// not the system's cache of it. Reads must then start on a sector, and be whole sectors long.
HANDLE openUnbuffered(const std::wstring& path) {
    return CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                       FILE_FLAG_NO_BUFFERING | FILE_FLAG_SEQUENTIAL_SCAN, nullptr);
}

// Reads up to size bytes at offset (a multiple of the block size); fewer only at the end.
DWORD readAt(HANDLE h, char* buffer, DWORD size, std::uint64_t offset, const std::wstring& target) {
    OVERLAPPED at{};
    at.Offset = static_cast<DWORD>(offset);
    at.OffsetHigh = static_cast<DWORD>(offset >> 32);
    DWORD got = 0;
    if (!ReadFile(h, buffer, size, &got, &at) && GetLastError() != ERROR_HANDLE_EOF)
        throwFailure(GetLastError(), target);
    return got;
}

std::uint64_t sizeOf(HANDLE h, const std::wstring& target) {
    LARGE_INTEGER size{};
    if (!GetFileSizeEx(h, &size))
        throwFailure(GetLastError(), target);
    return static_cast<std::uint64_t>(size.QuadPart);
}

// A spec ending in a backslash asks for the folder's contents.
std::wstring searchSpec(const std::string& spec) {
    std::wstring wide = widePath(spec);
    if (wide.back() == L'\\')
        wide += L"*.*";
    return wide;
}

// The folder part of a path, with its trailing backslash; "" for a bare name.
std::wstring folderOf(const std::wstring& path) {
    std::size_t cut = path.find_last_of(L'\\');
    if (cut == std::wstring::npos)
        return path.size() >= 2 && path[1] == L':' ? path.substr(0, 2) : std::wstring();
    return path.substr(0, cut + 1);
}

// Whether path or a folder on the way to it, below its drive's root, is a reparse point: a link
// or a junction that would lead elsewhere.
bool throughReparsePoint(const std::wstring& path) {
    std::size_t at = path.size() >= 3 && path[1] == L':' ? 3 : 0;
    for (;;) {
        std::size_t end = path.find(L'\\', at);
        std::wstring prefix = path.substr(0, end);
        if (prefix.size() > at) {
            DWORD attributes = GetFileAttributesW(prefix.c_str());
            if (attributes != INVALID_FILE_ATTRIBUTES &&
                (attributes & FILE_ATTRIBUTE_REPARSE_POINT))
                return true;
        }
        if (end == std::wstring::npos)
            return false;
        at = end + 1;
    }
}

// Refuses a path that leads through a reparse point as a path that is not there.
void refuseReparsePoints(const std::wstring& path) {
    if (throughReparsePoint(path))
        throw failureFor(ERROR_PATH_NOT_FOUND, path);
}

bool isFolder(const std::wstring& path) {
    DWORD attributes = GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY);
}

// Hands take every entry a search finds, "." and ".." aside, until it returns false. A search
// in a folder that is not there finds nothing, unless the folder is required: then it is 76.
void findEach(const std::wstring& spec, bool required,
              const std::function<bool(const WIN32_FIND_DATAW&)>& take) {
    QuietDriveErrors quiet;
    if (throughReparsePoint(folderOf(spec))) {
        if (required)
            throw failureFor(ERROR_PATH_NOT_FOUND, spec);
        return;
    }
    WIN32_FIND_DATAW data;
    FindHandle find(
        FindFirstFileExW(spec.c_str(), FindExInfoBasic, &data, FindExSearchNameMatch, nullptr, 0));
    if (!find.valid()) {
        DWORD error = GetLastError();
        FileFailure failure = failureFor(error, spec);
        std::wstring folder = folderOf(spec);
        // Wine calls a search below a plain file a bad name; it is a folder that is not there.
        bool missing = failure.Number == kFailPathNotFound ||
                       (failure.Number == kFailBadFileName && !folder.empty() && !isFolder(folder));
        if (!missing)
            throw failure;
        // Nothing matched (an empty drive root has no "." either) in a folder that is there.
        if (!required || (error == ERROR_FILE_NOT_FOUND && isFolder(folder)))
            return;
        throw failureFor(ERROR_PATH_NOT_FOUND, spec);
    }
    do {
        const wchar_t* name = data.cFileName;
        if (name[0] == L'.' && (name[1] == L'\0' || (name[1] == L'.' && name[2] == L'\0')))
            continue;
        if (!take(data))
            return;
    } while (FindNextFileW(find.get(), &data));
    // A drive pulled halfway must not pass for the end of the list.
    DWORD error = GetLastError();
    if (error != ERROR_NO_MORE_FILES)
        throwFailure(error, spec);
}

// Bare names of the plain files that match spec, in directory order; at most one if first.
std::vector<std::wstring> plainMatches(const std::wstring& spec, bool first) {
    std::vector<std::wstring> names;
    // The system also matches a pattern against 8.3 short names ("*.txt" finds "a.txtx"), and
    // Wine takes "*." for "*"; the long name decides, as on the Linux build.
    std::string pattern = utf8FromWide(spec.substr(folderOf(spec).size()));
    bool wildcards = hasWildcards(pattern);
    findEach(spec, false, [&](const WIN32_FIND_DATAW& data) {
        if ((data.dwFileAttributes & kNotPlain) != 0 ||
            (wildcards && !wildcardMatch(pattern, utf8FromWide(data.cFileName))))
            return true;
        names.emplace_back(data.cFileName);
        return !first;
    });
    return names;
}

// The search for every entry of a drive-form folder, given with or without its backslash.
std::wstring everythingIn(const std::string& folder) {
    std::wstring wide = widePath(folder);
    if (wide.back() != L'\\')
        wide += L'\\';
    return wide + L"*";
}

// Hidden by its leading dot and marked as ours, like the copies of the Linux build.
std::wstring temporaryName(const std::wstring& destination) {
    std::size_t cut = destination.find_last_of(L"\\:");
    std::wstring folder =
        cut == std::wstring::npos ? std::wstring() : destination.substr(0, cut + 1);
    std::wstring base = cut == std::wstring::npos ? destination : destination.substr(cut + 1);
    return folder + wideFromUtf8(copyTemporaryName(utf8FromWide(base), GetCurrentProcessId()));
}

// A process that has ended can no longer be writing; this one writes each file from one place
// at a time.
bool writerGone(unsigned long writer) {
    if (writer == 0)
        return false;
    if (writer == GetCurrentProcessId())
        return true;
    HANDLE opened = OpenProcess(SYNCHRONIZE, FALSE, static_cast<DWORD>(writer));
    if (!opened)
        return GetLastError() == ERROR_INVALID_PARAMETER;
    FileHandle process(opened);
    return WaitForSingleObject(process.get(), 0) == WAIT_OBJECT_0;
}

void discard(const std::wstring& path) {
    SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
    DeleteFileW(path.c_str());
}

// How many copies of a source that keeps changing are made before it is given up.
constexpr int kCopiesOfAChangingSource = 3;

// Whether two looks at an open file saw one state of it: the same file, size and times.
bool sameState(const BY_HANDLE_FILE_INFORMATION& a, const BY_HANDLE_FILE_INFORMATION& b) {
    auto same = [](const FILETIME& x, const FILETIME& y) {
        return x.dwLowDateTime == y.dwLowDateTime && x.dwHighDateTime == y.dwHighDateTime;
    };
    return a.dwVolumeSerialNumber == b.dwVolumeSerialNumber &&
           a.nFileIndexHigh == b.nFileIndexHigh && a.nFileIndexLow == b.nFileIndexLow &&
           a.nFileSizeHigh == b.nFileSizeHigh && a.nFileSizeLow == b.nFileSizeLow &&
           same(a.ftLastWriteTime, b.ftLastWriteTime) && same(a.ftCreationTime, b.ftCreationTime);
}

// A source that cannot be opened or read: one that another program holds is told as such.
FileFailure sourceFailure(DWORD error, const std::wstring& from) {
    if (error == ERROR_SHARING_VIOLATION || error == ERROR_LOCK_VIOLATION)
        return fileFailure(kFailSourceInUse);
    return failureFor(error, from);
}

} // namespace

std::string Win32FileSystem::firstMatch(const std::string& spec) {
    if (spec.empty())
        return {};
    std::vector<std::wstring> names = plainMatches(searchSpec(spec), true);
    return names.empty() ? std::string() : utf8FromWide(names.front());
}

void Win32FileSystem::moveFile(const std::string& oldPath, const std::string& newPath) {
    std::wstring from = widePath(oldPath);
    std::wstring to = widePath(newPath);
    refuseReparsePoints(folderOf(from));
    refuseReparsePoints(folderOf(to));
    if (!MoveFileExW(from.c_str(), to.c_str(), MOVEFILE_COPY_ALLOWED | MOVEFILE_WRITE_THROUGH)) {
        DWORD error = GetLastError();
        throwFailure(error, driveMissing(to) ? to : from);
    }
}

void Win32FileSystem::copyFile(const std::string& source, const std::string& destination) {
    std::optional<StagedCopy> copy = stageCopy(source, destination);
    try {
        flushStaged({*copy});
        if (std::optional<FileFailure> failure = readBackStaged({*copy}).front())
            throw *failure;
        placeStaged(*copy);
    } catch (const FileFailure&) {
        discardStaged(*copy);
        throw;
    }
}

std::optional<StagedCopy> Win32FileSystem::stageCopy(const std::string& source,
                                                     const std::string& destination) {
    std::wstring from = widePath(source);
    std::wstring to = widePath(destination);
    QuietDriveErrors quiet;

    refuseReparsePoints(folderOf(from));
    refuseReparsePoints(folderOf(to));
    WIN32_FILE_ATTRIBUTE_DATA data{};
    if (!GetFileAttributesExW(from.c_str(), GetFileExInfoStandard, &data))
        throwFailure(GetLastError(), from);
    // A link is not read as the file it points to.
    if (data.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT)
        throw failureFor(ERROR_FILE_NOT_FOUND, from);
    // Others may go on reading and writing the source meanwhile, as with the system's own copy.
    FileHandle in(CreateFileW(from.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE,
                              nullptr, OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
    if (!in.valid())
        throw sourceFailure(GetLastError(), from);
    BY_HANDLE_FILE_INFORMATION info{};
    if (!GetFileInformationByHandle(in.get(), &info))
        throwFailure(GetLastError(), from);
    // A file to be replaced keeps its own attributes, and a read-only one is not replaced.
    DWORD keep = data.dwFileAttributes;
    WIN32_FILE_ATTRIBUTE_DATA old{};
    if (GetFileAttributesExW(to.c_str(), GetFileExInfoStandard, &old) &&
        !(old.dwFileAttributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT))) {
        if (old.dwFileAttributes & FILE_ATTRIBUTE_READONLY)
            throw failureFor(ERROR_ACCESS_DENIED, to);
        keep = old.dwFileAttributes;
    }

    std::wstring temp;
    Digester digest;
    std::unique_ptr<char[]> buffer(new char[kBuffer]);
    for (int made = 1;; ++made) {
        // Hidden from its creation while it waits to be flushed; the rename then puts it in
        // place whole.
        HANDLE created = INVALID_HANDLE_VALUE;
        for (int attempt = 0;; ++attempt) {
            temp = temporaryName(to);
            created = CreateFileW(temp.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                  FILE_ATTRIBUTE_HIDDEN | FILE_FLAG_SEQUENTIAL_SCAN, nullptr);
            if (created != INVALID_HANDLE_VALUE)
                break;
            DWORD error = GetLastError();
            if ((error != ERROR_FILE_EXISTS && error != ERROR_ALREADY_EXISTS) || attempt == 10)
                throwFailure(error, to);
        }
        FileHandle out(created);

        // The source is read once: its digest is taken on the way.
        digest = Digester();
        DWORD error = ERROR_SUCCESS;
        bool fromSource = false;
        for (;;) {
            DWORD got = 0;
            if (!ReadFile(in.get(), buffer.get(), kBuffer, &got, nullptr)) {
                error = GetLastError();
                fromSource = true;
                break;
            }
            if (got == 0)
                break;
            digest.add(buffer.get(), got);
            DWORD put = 0;
            BOOL ok = WriteFile(out.get(), buffer.get(), got, &put, nullptr);
            if (!ok || put != got) {
                error = ok ? ERROR_WRITE_FAULT : GetLastError();
                break;
            }
        }
        // One state of the source, or none: the finance program writes its files in place while
        // it runs, and a source written meanwhile is copied again.
        BY_HANDLE_FILE_INFORMATION after{};
        if (error == ERROR_SUCCESS && !GetFileInformationByHandle(in.get(), &after)) {
            error = GetLastError();
            fromSource = true;
        }
        if (error == ERROR_SUCCESS && secondLook && !sameState(info, after)) {
            out.close();
            discard(temp);
            if (made == kCopiesOfAChangingSource)
                throw fileFailure(kFailSourceChanging);
            LARGE_INTEGER start{};
            if (!SetFilePointerEx(in.get(), start, nullptr, FILE_BEGIN))
                throwFailure(GetLastError(), from);
            info = after;
            continue;
        }
        // The copy carries the source's time, as the system's own copy gives it.
        if (error == ERROR_SUCCESS &&
            !SetFileTime(out.get(), nullptr, nullptr, &info.ftLastWriteTime))
            error = GetLastError();
        if (!out.close() && error == ERROR_SUCCESS)
            error = GetLastError();
        if (error == ERROR_SUCCESS &&
            !SetFileAttributesW(temp.c_str(), (info.dwFileAttributes & ~FILE_ATTRIBUTE_READONLY) |
                                                  FILE_ATTRIBUTE_HIDDEN))
            error = GetLastError();
        if (error != ERROR_SUCCESS) {
            discard(temp);
            if (fromSource)
                throw sourceFailure(error, from);
            throwFailure(error, to);
        }
        break;
    }
    StagedCopy copy;
    copy.source = source;
    copy.destination = destination;
    copy.temporary = utf8FromWide(temp);
    copy.target = utf8FromWide(to);
    copy.attributes = keep;
    copy.written = digest.digest();
    return copy;
}

void Win32FileSystem::flushStaged(const std::vector<StagedCopy>& copies) {
    QuietDriveErrors quiet;
    for (const StagedCopy& copy : copies) {
        std::wstring temp = wideFromUtf8(copy.temporary);
        FileHandle h(CreateFileW(temp.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING,
                                 FILE_ATTRIBUTE_NORMAL, nullptr));
        if (!h.valid())
            throwFailure(GetLastError(), wideFromUtf8(copy.target));
        // The copy already carries the source's time; flushing must not move it.
        FILETIME written{};
        DWORD error = ERROR_SUCCESS;
        if (!GetFileTime(h.get(), nullptr, nullptr, &written) || !FlushFileBuffers(h.get()) ||
            !SetFileTime(h.get(), nullptr, nullptr, &written))
            error = GetLastError();
        h.close();
        if (error != ERROR_SUCCESS)
            throwFailure(error, wideFromUtf8(copy.target));
    }
}

namespace {

// Whether a flushed temporary holds every byte the source gave; throws what keeps it from being
// read.
bool stagedHoldsWhatWasWritten(const StagedCopy& copy) {
    const std::wstring target = wideFromUtf8(copy.target);
    QuietDriveErrors quiet;
    FileHandle h(openUnbuffered(wideFromUtf8(copy.temporary)));
    if (!h.valid())
        throwFailure(GetLastError(), target);
    const std::uint64_t size = sizeOf(h.get(), target);
    PageBuffer buffer(kBuffer);
    Digester digest;
    // Read by the size taken first: a read that starts past a partial last sector is refused.
    for (std::uint64_t offset = 0; offset < size;) {
        DWORD got = readAt(h.get(), buffer.get(), kBuffer, offset, target);
        if (got == 0)
            break;
        digest.add(buffer.get(), got);
        offset += got;
    }
    return digest.digest() == copy.written;
}

// Whether a placed copy still has the size, first and last block its source gave.
bool placedHoldsWhatWasWritten(const StagedCopy& copy) {
    const std::wstring target = wideFromUtf8(copy.target);
    QuietDriveErrors quiet;
    FileHandle h(openUnbuffered(target));
    if (!h.valid())
        throwFailure(GetLastError(), target);
    const std::uint64_t size = sizeOf(h.get(), target);
    if (size != copy.written.size)
        return false;
    PageBuffer buffer(kBlock);
    DWORD got = readAt(h.get(), buffer.get(), kBlock, 0, target);
    if (blockHash(buffer.get(), got) != copy.written.first)
        return false;
    const std::uint64_t last = lastBlockStart(size);
    got = readAt(h.get(), buffer.get(), kBlock, last, target);
    return last + got == size && blockHash(buffer.get(), got) == copy.written.last;
}

// What failed for each copy, one after the other: an unbuffered read has no cache to fill ahead.
std::vector<std::optional<FileFailure>> readBackEach(const std::vector<StagedCopy>& copies,
                                                     bool (*holds)(const StagedCopy&)) {
    std::vector<std::optional<FileFailure>> failures(copies.size());
    for (std::size_t i = 0; i < copies.size(); ++i) {
        try {
            if (!holds(copies[i]))
                failures[i] = readBackFailure(copies[i].destination);
        } catch (const FileFailure& failure) {
            failures[i] = failure;
        }
    }
    return failures;
}

} // namespace

std::vector<std::optional<FileFailure>>
Win32FileSystem::readBackStaged(const std::vector<StagedCopy>& copies) {
    return readBackEach(copies, stagedHoldsWhatWasWritten);
}

std::vector<std::optional<FileFailure>>
Win32FileSystem::readBackPlaced(const std::vector<StagedCopy>& copies) {
    return readBackEach(copies, placedHoldsWhatWasWritten);
}

void Win32FileSystem::placeStaged(const StagedCopy& copy) {
    std::wstring temp = wideFromUtf8(copy.temporary);
    std::wstring to = wideFromUtf8(copy.target);
    QuietDriveErrors quiet;
    if (!MoveFileExW(temp.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH))
        throwFailure(GetLastError(), to);
    if (!SetFileAttributesW(to.c_str(), static_cast<DWORD>(copy.attributes)))
        throwFailure(GetLastError(), to);
}

void Win32FileSystem::discardStaged(const StagedCopy& copy) noexcept {
    try {
        discard(wideFromUtf8(copy.temporary));
    } catch (...) {
        // A temporary that cannot be removed stays hidden until the next run clears it.
    }
}

void Win32FileSystem::discardPlaced(const StagedCopy& copy) noexcept {
    try {
        discard(wideFromUtf8(copy.target));
    } catch (...) {
        // What cannot be removed stays; the run has failed and said so.
    }
}

void Win32FileSystem::deleteFile(const std::string& path) {
    std::wstring wide = widePath(path);
    refuseReparsePoints(folderOf(wide));
    if (!DeleteFileW(wide.c_str()))
        throwFailure(GetLastError(), wide);
}

void Win32FileSystem::writeFile(const std::string& path, const std::string& bytes) {
    std::wstring wide = widePath(path);
    QuietDriveErrors quiet;
    refuseReparsePoints(folderOf(wide));
    // Written beside and moved over the name: a link standing there is replaced, never written
    // through.
    std::wstring temp = temporaryName(wide);
    FileHandle out(CreateFileW(temp.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                               FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!out.valid())
        throwFailure(GetLastError(), wide);
    DWORD written = 0;
    DWORD error = ERROR_SUCCESS;
    if (!WriteFile(out.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr))
        error = GetLastError();
    else if (written != bytes.size())
        error = ERROR_WRITE_FAULT;
    out.close();
    if (error == ERROR_SUCCESS &&
        MoveFileExW(temp.c_str(), wide.c_str(), MOVEFILE_REPLACE_EXISTING))
        return;
    if (error == ERROR_SUCCESS)
        error = GetLastError();
    discard(temp);
    throwFailure(error, wide);
}

void Win32FileSystem::makeFolder(const std::string& path) {
    std::wstring wide = widePath(path);
    QuietDriveErrors quiet;
    refuseReparsePoints(folderOf(wide));
    if (!CreateDirectoryW(wide.c_str(), nullptr))
        throwFailure(GetLastError(), wide);
}

void Win32FileSystem::deleteByPattern(const std::string& spec) {
    std::wstring wide = searchSpec(spec);
    std::vector<std::wstring> names = plainMatches(wide, false);
    if (names.empty())
        throw failureFor(ERROR_FILE_NOT_FOUND, wide);
    std::wstring folder = folderOf(wide);
    for (const std::wstring& name : names) {
        std::wstring path = folder + name;
        if (!DeleteFileW(path.c_str()))
            throwFailure(GetLastError(), path);
    }
}

void Win32FileSystem::removeFolder(const std::string& path) {
    std::wstring wide = widePath(path);
    // A junction in the folder's place is not a folder of the drive.
    refuseReparsePoints(wide);
    if (!RemoveDirectoryW(wide.c_str()))
        throwFailure(GetLastError(), wide);
}

std::vector<std::string> Win32FileSystem::listFolders(const std::string& folder) {
    std::vector<std::string> names;
    findEach(everythingIn(folder), true, [&](const WIN32_FIND_DATAW& data) {
        if ((data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) &&
            !(data.dwFileAttributes & (FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_REPARSE_POINT)))
            names.push_back(utf8FromWide(data.cFileName));
        return true;
    });
    sortIgnoringCase(names);
    return names;
}

std::vector<std::string> Win32FileSystem::listFiles(const std::string& folder,
                                                    const std::string& pattern) {
    std::vector<std::string> names;
    // Every entry, the pattern applied here: the system's own matching also looks at 8.3 names.
    findEach(everythingIn(folder), true, [&](const WIN32_FIND_DATAW& data) {
        if ((data.dwFileAttributes & kNotPlain) != 0)
            return true;
        std::string name = utf8FromWide(data.cFileName);
        if (!isCopyTemporary(name) && wildcardMatch(pattern, name))
            names.push_back(std::move(name));
        return true;
    });
    sortIgnoringCase(names);
    return names;
}

void Win32FileSystem::flushFolder(const std::string& folder) {
    std::wstring wide = widePath(folder);
    QuietDriveErrors quiet;
    // A folder opens only with the backup flag, and flushes only when opened for writing.
    FileHandle h(CreateFileW(wide.c_str(), GENERIC_WRITE,
                             FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                             OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    DWORD error = ERROR_SUCCESS;
    if (!h.valid() || !FlushFileBuffers(h.get()))
        error = GetLastError();
    // Media and file systems that refuse to flush a folder rely on the renames
    // having been written through, as copyFile asks.
    if (error == ERROR_SUCCESS || error == ERROR_ACCESS_DENIED || error == ERROR_INVALID_FUNCTION ||
        error == ERROR_INVALID_PARAMETER || error == ERROR_NOT_SUPPORTED)
        return;
    throwFailure(error, wide);
}

void Win32FileSystem::removeCopyLeftovers(const std::string& folder) {
    std::vector<std::wstring> leftovers;
    try {
        std::wstring spec = everythingIn(folder);
        findEach(spec, false, [&](const WIN32_FIND_DATAW& data) {
            if (!(data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) &&
                writerGone(copyTemporaryWriter(utf8FromWide(data.cFileName))))
                leftovers.push_back(folderOf(spec) + data.cFileName);
            return true;
        });
    } catch (const FileFailure&) {
        return;
    }
    for (const std::wstring& path : leftovers)
        discard(path);
}

ReplaceClaim Win32FileSystem::claimToReplace(const std::string& path) {
    ReplaceClaim claim;
    try {
        QuietDriveErrors quiet;
        FileHandle h(CreateFileW(widePath(path).c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING,
                                 FILE_ATTRIBUTE_NORMAL, nullptr));
        claim.inUse = !h.valid() && GetLastError() == ERROR_SHARING_VIOLATION;
    } catch (const FileFailure&) {
        // Not to be told here: the replace that follows meets it and says so.
    }
    return claim;
}

} // namespace nv
