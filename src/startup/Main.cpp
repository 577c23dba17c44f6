#include "startup/Main.h"

#include "platform/DateText.h"
#include "platform/FileFailure.h"
#include "platform/Platform.h"
#include "production/KnownFile.h"
#include "startup/AppSettings.h"
#include "startup/FileOps.h"
#include "startup/MsgBox.h"
#include "startup/Paths.h"
#include "startup/Settings.h"

namespace nv {

const char* const kRestoreOnlyQuestion =
    "Norvale kan de productiebestanden nog niet vinden dus u kunt nog geen backup maken. \r\n\r\n"
    "U kunt wel een bestaande backup terugzetten. Wilt u dit doen?";

namespace {

// Reads the settings into AppSettings; a value that cannot be converted takes its default.
void readSettings() {
    ProfileBatch batch(*platform().profiles);
    AppSettings.dirfrom = fIniValue(kSectionBasic, "dirfrom", AppSettings.strAppDir, "");
    AppSettings.DriveTarget = fIniValue(kSectionBasic, "DriveTarget", "C:", "");

    const long count = fRowCount(fIniValue(kSectionBasic, "AantalFiles", "-1", ""), "");
    AppSettings.AantalFiles = static_cast<int16_t>(count);

    Date today = platform().clock->today();
    AppSettings.LastBackup =
        parseShortDate(fIniValue(kSectionBasic, "LastBackup", shortDateText(today), ""));

    long directory = 0;
    if (!parseWholeNumber(fIniValue(kSectionBasic, "Directory", "0", ""), 0, 255, directory))
        directory = 0;
    AppSettings.Directory = static_cast<uint8_t>(directory);

    AppSettings.strFiles.assign(static_cast<std::size_t>(count) + 1, "");
    for (long n = 1; n <= count; ++n)
        AppSettings.strFiles[n] = fIniValue(kSectionFiles, rowKey(n), " ", "");
}

// Whether the start left a settings file that later changes can be stored in; a folder that
// cannot even be looked into has none.
bool settingsFileStorable() {
    try {
        return fPlainFileExists(AppSettings.strIniFile) &&
               platform().profiles->mayStore(AppSettings.strIniFile);
    } catch (const FileFailure&) {
        return false;
    }
}

} // namespace

MainOutcome Main(StartWindows& windows) {
    // The start tells in one box what it could not store, not once per store.
    SettingsStoresUntold untold;
    AppSettings = AppSettingsRecord{};
    std::string path = AppPath();
    uint8_t status = 0;
    AppSettings.strAppDir = fFindAppDir(path, status);
    // Without a production folder there is nothing to read or to back up; "Geen Directory" has
    // been told.
    if (AppSettings.strAppDir.empty())
        return MainOutcome::Ended;
    // What an interrupted restore or settings write left in the production folder goes now.
    subRemoveCopyLeftovers(AppSettings.strAppDir);

    if (status == 1) {
        if (MsgBox(kRestoreOnlyQuestion, Buttons::YesNo, Icon::Question, DefaultButton::First) ==
            Answer::No)
            return MainOutcome::Ended;
        AppSettings.blnRestoreOnly = true;
    }

    AppSettings.strIniFile = AppSettings.strAppDir + kIniFileName;
    App.HelpFile = AppPath() + "\\NV BU tool.chm";
    readSettings();
    // Every start stores the list and the production folder; without a file afterwards, or with
    // one that cannot be written, the user would meet an empty list, or lose every change, and
    // no word why.
    if (!settingsFileStorable())
        MsgBox(fSettingsNotStoredText(AppSettings.strAppDir), Buttons::OK, Icon::Exclamation);

    windows.loadMainWindow();
    windows.showMainWindow();
    windows.loadSplash();
    windows.showSplash();
    return MainOutcome::Running;
}

} // namespace nv
