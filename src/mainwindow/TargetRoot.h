#pragma once

#include <string>

namespace nv {

// The root folder of the target drive, DriveTarget followed by a backslash. A target that names
// no drive, as an empty DriveTarget= in the settings file, is a drive that is not there: it
// fails with 68, so that the window watches for a drive instead of giving up.
std::string fTargetRoot(const std::string& driveTarget);

} // namespace nv
