#pragma once

#include <chrono>
#include <string>

namespace nv {

// How long a backup spends on the leftovers of older backup folders; a later run goes on.
inline constexpr std::chrono::milliseconds kSweepBudget{2000};

// Removes what interrupted copies left on the target: in the folder of this run with its
// subfolders first, then in every other folder of the target's root whose name begins with
// "Backup", newest name first, until budget has passed. Never fails.
void subSweepBackupLeftovers(const std::string& driveTarget, const std::string& runFolder,
                             std::chrono::milliseconds budget = kSweepBudget);

} // namespace nv
