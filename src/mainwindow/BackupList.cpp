// The backup list: adding and removing files, Ctrl+A, and writing the list to the settings.
#include "mainwindow/FrmMain.h"

#include "platform/Platform.h"
#include "platform/ProfileStore.h"
#include "startup/AppSettings.h"
#include "startup/MsgBox.h"
#include "startup/Paths.h"
#include "startup/Settings.h"

#include <algorithm>

namespace nv {

void FrmMain::CmdSelectFiles_Click() {
    auto& s = AppSettings;
    std::string FileName = platform().dialogs->showOpen("Files voor BackUp", s.dirfrom);
    if (!FileName.empty() && LstSelectedFiles->count() >= kMaximumRows) {
        MsgBox("De lijst bevat al " + std::to_string(kMaximumRows) +
                   " bestanden, meer kunnen er niet in",
               Buttons::OK, Icon::Exclamation, DefaultButton::First, "Voeg bestand toe");
        FileName.clear();
    }
    if (!FileName.empty()) {
        LstSelectedFiles->addItem(FileName);
        const std::size_t found = FileName.find(bareNameOf(FileName));
        // The first occurrence decides, as C:\kas\kas gives C:; the title always occurs.
        if (found != std::string::npos && found >= 1)
            s.dirfrom = FileName.substr(0, found - 1);
    }
    RefreshStatus();
    INIbijwerken();
}

void FrmMain::CmdVerwijder_Click() {
    const std::string text = LstSelectedFiles->text();
    if (text.empty()) {
        MsgBox("Selecteer eerst het te verwijderen bestand uit de lijst", Buttons::OK, Icon::None,
               DefaultButton::First, "Verwijderen bestanden");
        return;
    }
    const std::string question =
        "Wilt u het bestand " + text +
        " niet meer meenemen in de backup?\r\n\r\nHet bestand blijft wel "
        "gewoon bewaard maar loopt niet meer mee in de automatische backup";
    intRemoveRow = static_cast<int16_t>(LstSelectedFiles->listIndex());
    if (MsgBox(question, Buttons::YesNo, Icon::Question, DefaultButton::First, "Backup files") !=
        Answer::Yes)
        return;
    LstSelectedFiles->removeItem(intRemoveRow);
    RefreshStatus();
    INIbijwerken();
}

void FrmMain::LstSelectedFiles_KeyDown(int KeyCode, int Shift) {
    if (KeyCode != kKeyA || Shift != kCtrlMask)
        return;
    for (int i = 0; i < LstSelectedFiles->count(); ++i)
        LstSelectedFiles->setSelected(i, true);
}

void FrmMain::INIbijwerken() {
    auto& s = AppSettings;
    // One pass over the file for the whole list, which may hold 32,767 rows.
    ProfileBatch batch(*platform().profiles);
    s.strFiles.assign(static_cast<std::size_t>(std::max<int>(s.AantalFiles, 0)) + 1, "");
    // The counter is 16 bits wide, so a loop on it alone would never pass 32,767.
    for (int n = 1; n <= s.AantalFiles; ++n) {
        intLoop = static_cast<int16_t>(n);
        const std::string value = LstSelectedFiles->list(n - 1);
        subWriteIni(s.strIniFile, kSectionFiles, rowKey(n), value);
        s.strFiles[static_cast<std::size_t>(n)] = value;
    }
    subWriteIni(s.strIniFile, kSectionBasic, "dirfrom", s.dirfrom);
    subWriteIni(s.strIniFile, kSectionBasic, "AantalFiles", std::to_string(s.AantalFiles));
}

} // namespace nv
