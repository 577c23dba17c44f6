#pragma once

#include "platform/Clock.h"

#include <optional>
#include <string>

namespace nv {

// "Laatste backup gemaakt op: 17-nov-2026 (Vandaag)", or "(3 dagen geleden)"; a date in the
// future gives a negative count in the same words. Without a date the line says "onbekend".
std::string fLastBackupText(Date today, std::optional<Date> lastBackup);

// The first text of LblStation when the target drive is not there at start.
std::string fDriveAbsentAtStartText(const std::string& driveTarget);

} // namespace nv
