#include "platform/CaseFold.h"
#include "platform/FileFailure.h"
#include "platform/Platform.h"
#include "production/KnownFile.h"
#include "startup/AppSettings.h"
#include "startup/Paths.h"
#include "startup/Settings.h"

#include <vector>

namespace nv {

void subReconcileBackupList(const std::string& folder, const std::string& iniPath) {
    ProfileBatch batch(*platform().profiles);
    long count = fRowCount(fIniValue(kSectionBasic, "AantalFiles", "0", iniPath), iniPath);
    std::vector<std::string> rows(static_cast<std::size_t>(count) + 11);
    for (long n = 1; n <= count; ++n)
        rows[n] = fIniValue(kSectionFiles, rowKey(n), "", iniPath);

    const auto& known = AppSettings.strKnownFiles;
    for (int row = 0; row <= 10; ++row) {
        const std::string wanted = upperCase(known[static_cast<std::size_t>(row)]);
        long n = 0;
        bool found = false;
        while (!found && n < count) {
            ++n;
            try {
                found = upperCase(fFileOfPath(rows[n])) == wanted;
            } catch (const FileFailure&) {
                // An empty row names no file; it stays where it is.
            }
        }
        if (!isOldStyleRow(row)) {
            std::string target = folder + known[static_cast<std::size_t>(row)];
            if (found) {
                if (upperCase(rows[n]) != upperCase(target)) {
                    rows[n] = target;
                    subWriteIni(iniPath, kSectionFiles, rowKey(n), rows[n]);
                }
            } else if (count < kMaximumRows) {
                ++count;
                rows[count] = target;
                subWriteIni(iniPath, kSectionFiles, rowKey(count), rows[count]);
            }
        } else if (found) {
            for (long k = n + 1; k <= count; ++k) {
                subWriteIni(iniPath, kSectionFiles, rowKey(k - 1), rows[k]);
                rows[k - 1] = rows[k];
            }
            subWriteIni(iniPath, kSectionFiles, rowKey(count), std::string());
            --count;
        }
    }
    subWriteIni(iniPath, kSectionBasic, "AantalFiles", std::to_string(count));
}

} // namespace nv
