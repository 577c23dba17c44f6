#include "support/FakeControls.h"

#include "platform/FileFailure.h"
#include "startup/FileOps.h"
#include "startup/Paths.h"

#include <utility>

namespace nvtest {

bool FakeListBox::clickRow(int row) {
    if (!reachable() || row < 0 || row >= count())
        return false;
    for (Row& each : rows)
        each.selected = false;
    rows[row].selected = true;
    current_ = row;
    return true;
}

int FakeListBox::rowOf(const std::string& text) const {
    for (int row = 0; row < count(); ++row) {
        const std::size_t indent = rows[row].text.find_first_not_of(' ');
        if (indent != std::string::npos && rows[row].text.substr(indent) == text)
            return row;
    }
    return -1;
}

bool FakeComboBox::choose(const std::string& text) {
    if (!reachable())
        return false;
    if (DropDown)
        DropDown();
    for (int row = 0; row < count(); ++row)
        if (rows[row].text.starts_with(text)) {
            if (std::exchange(current_, row) != row && Click)
                Click();
            return true;
        }
    return false;
}

bool FakeAnimation::open(const std::string& path) {
    try {
        if (!nv::fPlainFileExists(path))
            return false;
    } catch (const nv::FileFailure&) {
        return false;
    }
    opened = path;
    return true;
}

void FakeWindow::setPlace(const nv::TwipsRect& place) {
    const bool resized = place.width != place_.width || place.height != place_.height;
    place_ = place;
    if (resized && Resize)
        Resize();
}

namespace {

// A window the fake set keeps after the core lets go of it.
template <typename Form> struct Borrowed : nv::FormFace<Form> {
    explicit Borrowed(nv::FormFace<Form>& kept) : kept(kept) {}
    Form& form() override { return kept.form(); }
    nv::FormFace<Form>& kept;
};

} // namespace

FakeMainWindow::FakeMainWindow() {
    // As the window is drawn; a frame's children stand relative to it, the panel's to the panel.
    // clang-format off
    const std::pair<nv::Control*, nv::TwipsRect> places[] = {
        {&Me, {0, 2000, 10020, 10305}}, {&TxtLastBackup, {240, 120, 7695, 375}},
        {&Label1, {240, 720, 8775, 375}}, {&LstSelectedFiles, {240, 1080, 9375, 2010}},
        {&Shape1, {9240, 1080, 975, 975}}, {&Cmd_Backup, {240, 3240, 2175, 495}},
        {&CmdSelectFiles, {5040, 3240, 2175, 375}}, {&CmdVerwijder, {7440, 3240, 2175, 375}},
        {&fraDirectory, {240, 4320, 9375, 2655}}, {&TargetDrive, {120, 240, 2655, 315}},
        {&TargetDirectories, {3000, 240, 2775, 1440}}, {&TargetFileLst, {6000, 240, 3015, 1455}},
        {&LblStation, {225, 765, 2625, 1590}}, {&Lbl_InhoudDir, {6000, 1800, 3015, 615}},
        {&CmdDeleteDir, {2955, 1890, 2775, 615}}, {&CmdVervers, {2955, 1890, 2775, 615}},
        {&CmdRestore, {240, 7080, 2175, 495}}, {&PicRestore, {0, 7155, 10020, 2775}},
        {&LblRestore[0], {120, 105, 9450, 435}}, {&LblRestore[1], {120, 450, 9465, 1635}},
        {&CmdWizRestore[0], {7365, 2175, 2160, 405}}, {&CmdWizRestore[1], {4950, 2190, 2160, 405}},
        {&CmdWizRestore[2], {2595, 2205, 2160, 405}}};
    // clang-format on
    for (const auto& [control, place] : places)
        control->setPlace(place);
    for (nv::Control* hidden :
         std::initializer_list<nv::Control*>{&Shape1, &CmdDeleteDir, &CmdVervers, &CmdRestore})
        hidden->setVisible(false);
}

nv::FrmMain& FakeMainWindow::form() {
    if (!form_) {
        // clang-format off
        const nv::FrmMain::Controls c{&Me, &TxtLastBackup, &Label1, &LstSelectedFiles, &Shape1,
            &Cmd_Backup, &CmdSelectFiles, &CmdVerwijder, &fraDirectory, &TargetDrive,
            &TargetDirectories, &TargetFileLst, &LblStation, &Lbl_InhoudDir, &CmdDeleteDir,
            &CmdVervers, &CmdRestore, &PicRestore, {&LblRestore[0], &LblRestore[1]},
            {&CmdWizRestore[0], &CmdWizRestore[1], &CmdWizRestore[2]}, &StatusBar, &Timer1,
            &MoVoegToe, &MoVerwijder, &MoAfsluiten, &moBackUp, &moRestore, &MoHelp, &MoAbout};
        // clang-format on
        form_ = std::make_unique<nv::FrmMain>(c, *this);
    }
    return *form_;
}

std::unique_ptr<nv::FormFace<nv::Frm_Copy>> FakeMainWindow::loadCopyWindow() {
    copyWindows.push_back(std::make_unique<FakeCopyWindow>());
    return std::make_unique<Borrowed<nv::Frm_Copy>>(*copyWindows.back());
}

std::string FakeMainWindow::buttonState() const {
    std::string state;
    for (bool on : {Cmd_Backup.enabled(), CmdDeleteDir.enabled(), CmdSelectFiles.enabled(),
                    CmdVerwijder.enabled(), CmdVervers.visible(), moBackUp.enabled(),
                    moRestore.enabled(), CmdRestore.visible()})
        state += on ? '1' : '0';
    return state;
}

bool FakeMainWindow::openFolder(const std::string& path) {
    for (const std::string& level : nv::splitPath(path))
        if (!TargetDirectories.doubleClick(TargetDirectories.rowOf(level)))
            return false;
    return true;
}

} // namespace nvtest
