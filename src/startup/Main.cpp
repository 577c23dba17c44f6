#include "startup/Main.h"

#include "platform/DateText.h"
#include "platform/Platform.h"
#include "production/KnownFile.h"
#include "startup/AppSettings.h"
#include "startup/FileOps.h"
#include "startup/MsgBox.h"
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

    long count = 0;
    if (!parseWholeNumber(fIniValue(kSectionBasic, "AantalFiles", "-1", ""), -32768, 32767,
                          count) ||
        count < 0)
        count = 0;
    AppSettings.AantalFiles = static_cast<int16_t>(count);

    Date today = platform().clock->today();
    auto lastBackup =
        parseShortDate(fIniValue(kSectionBasic, "LastBackup", shortDateText(today), ""));
    AppSettings.LastBackup = lastBackup ? *lastBackup : today;

    long directory = 0;
    if (!parseWholeNumber(fIniValue(kSectionBasic, "Directory", "0", ""), 0, 255, directory))
        directory = 0;
    AppSettings.Directory = static_cast<uint8_t>(directory);

    AppSettings.strFiles.assign(static_cast<std::size_t>(count) + 1, "");
    for (long n = 1; n <= count; ++n)
        AppSettings.strFiles[n] = fIniValue(kSectionFiles, rowKey(n), " ", "");
}

} // namespace

MainOutcome Main(StartWindows& windows) {
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

    windows.loadMainWindow();
    windows.showMainWindow();
    windows.loadSplash();
    windows.showSplash();
    return MainOutcome::Running;
}

} // namespace nv
