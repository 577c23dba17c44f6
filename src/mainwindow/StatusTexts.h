#pragma once

#include "platform/Clock.h"

#include <string>

namespace nv {

// "Laatste backup gemaakt op: 17-nov-2026 (Vandaag)", or "(3 dagen geleden)"; a date in the
// future gives a negative count in the same words.
std::string fLastBackupText(Date today, Date lastBackup);

// The first text of LblStation when the target drive is not there at start.
std::string fDriveAbsentAtStartText(const std::string& driveTarget);

} // namespace nv
