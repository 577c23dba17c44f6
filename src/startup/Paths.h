#pragma once

#include <string>
#include <vector>

namespace nv {

// Cuts a path at every backslash; "" gives no parts at all.
std::vector<std::string> splitPath(const std::string& path);

// The last component of path; a trailing backslash is taken off the caller's string. An empty
// path or a lone backslash has no component and throws FileFailure.
std::string fFileOfPath(std::string& path);

// The folder path lies in, without its trailing backslash; "" for a bare name.
std::string folderOf(const std::string& path);

// The name behind the last backslash; the whole text when it holds none.
std::string bareNameOf(const std::string& path);

// A folder as one spelling: "E:\Data\" and "E:\Data" give "E:\Data"; a root keeps or gets its
// backslash, "E:" gives "E:\".
std::string folderWithoutTrailingBackslash(std::string folder);

// The folder with one backslash behind it, ready for a name to be joined.
std::string folderWithTrailingBackslash(const std::string& folder);

// A folder of the platform (26, 28, 38) in drive form without trailing backslash, or "".
std::string fSpecialFolder(int csidl);

// Creates a folder with the levels above it; a level that is already there passes silently,
// any other failure shows a box and ends the walk.
void subMakeTree(std::string path);

} // namespace nv
