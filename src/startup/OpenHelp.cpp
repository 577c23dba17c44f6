#include "startup/OpenHelp.h"

#include "platform/DriveFormConversion.h"
#include "platform/FileFailure.h"
#include "startup/AppSettings.h"
#include "startup/FileOps.h"
#include "startup/MsgBox.h"

namespace nv {

void subOpenHelp(HelpViewer& viewer) {
    const std::string& helpFile = App.HelpFile;
    // Until the start has named the help file, as in its first boxes, F1 has nothing to open.
    if (helpFile.empty())
        return;
    std::string native;
    try {
        if (fPlainFileExists(helpFile))
            native = nativeFormOf(helpFile);
    } catch (const FileFailure&) {
    }
    if (native.empty()) {
        MsgBox("Het helpbestand '" + helpFile + "' kan niet gevonden worden.", Buttons::OK,
               Icon::Exclamation);
        return;
    }
    if (!viewer.show(native))
        MsgBox("Het helpbestand '" + helpFile + "' kan niet gelezen worden.", Buttons::OK,
               Icon::Exclamation);
}

} // namespace nv
