#include "support/FakeControls.h"

#include "platform/FileFailure.h"
#include "startup/FileOps.h"

namespace nvtest {

bool FakeLabel::click() {
    if (!reachable() || !Click)
        return false;
    Click();
    return true;
}

bool FakeButton::click() {
    if (!reachable() || !Click)
        return false;
    Click();
    return true;
}

void FakeListBox::addItem(const std::string& text, nv::RowIcon icon) {
    rows.push_back({text, icon, false});
}

void FakeListBox::removeItem(int row) {
    rows.erase(rows.begin() + row);
    if (current_ >= count())
        current_ = count() - 1;
}

void FakeListBox::clear() {
    rows.clear();
    current_ = -1;
}

bool FakeListBox::clickRow(int row) {
    if (!reachable() || row < 0 || row >= count())
        return false;
    for (Row& each : rows)
        each.selected = false;
    rows[row].selected = true;
    current_ = row;
    return true;
}

bool FakeListBox::doubleClick(int row) {
    if (!clickRow(row) || !DblClick)
        return false;
    DblClick(row);
    return true;
}

bool FakeListBox::keyDown(int keyCode, int shift) {
    if (!reachable() || !KeyDown)
        return false;
    KeyDown(keyCode, shift);
    return true;
}

int FakeListBox::selectedCount() const {
    int n = 0;
    for (const Row& row : rows)
        n += row.selected ? 1 : 0;
    return n;
}

std::vector<std::string> FakeListBox::texts() const {
    std::vector<std::string> out;
    for (const Row& row : rows)
        out.push_back(row.text);
    return out;
}

void FakeComboBox::clear() {
    rows.clear();
    current_ = -1;
}

bool FakeComboBox::choose(const std::string& text) {
    if (!reachable())
        return false;
    if (DropDown)
        DropDown();
    for (int row = 0; row < count(); ++row) {
        if (rows[row].rfind(text, 0) == 0) {
            bool moved = row != current_;
            current_ = row;
            if (moved && Click)
                Click();
            return true;
        }
    }
    return false;
}

bool FakeTimer::tick() {
    if (!enabled_ || !Timer)
        return false;
    Timer();
    return true;
}

bool FakeMenuItem::click() {
    if (!enabled_ || !Click)
        return false;
    Click();
    return true;
}

std::string FakeStatusBar::panelText(int panel) const {
    auto it = panels.find(panel);
    return it == panels.end() ? "" : it->second;
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
    bool resized = place.width != place_.width || place.height != place_.height;
    place_ = place;
    if (resized && Resize)
        Resize();
}

void FakeWindow::showModal() {
    visible_ = true;
    wasModal = true;
    if (whileModal)
        whileModal();
    visible_ = false;
}

void FakeWindow::close() {
    closed = true;
    visible_ = false;
}

void FakeWindow::dragToHeight(int height) {
    nv::TwipsRect p = place_;
    p.height = height;
    setPlace(p);
}

nv::TwipsRect FakeDockedPanel::place() const {
    nv::TwipsRect p = place_;
    p.top = window_.place().height - 375 - p.height;
    return p;
}

namespace {

template <typename... C> void shareFocus(FocusHolder& holder, C&... controls) {
    ((controls.focus = &holder), ...);
}

// Hands the core a window that the fake set keeps after the core lets go of it.
template <typename Form> class Borrowed : public nv::FormFace<Form> {
public:
    explicit Borrowed(nv::FormFace<Form>& kept) : kept_(kept) {}
    Form& form() override { return kept_.form(); }

private:
    nv::FormFace<Form>& kept_;
};

} // namespace

FakeCopyWindow::FakeCopyWindow() : form_({&Me, &Animation1, &Pbr, &Text1, &Label1}) {
    Me.setPlace({0, 0, 4605, 3090});
}

FakeAboutWindow::FakeAboutWindow()
    : form_({&Me, &lblTitle, &lblVersion, &lblDescription, &lblDisclaimer, &TxtInfo, &LblMail,
             &cmdOK}) {
    Me.setPlace({3120, 2970, 6090, 5040});
    cmdOK.setCaption("OK");
    shareFocus(focus, Me, LblMail, cmdOK);
}

FakeSplashWindow::FakeSplashWindow()
    : form_({&Me, &Frame1, &lblCopyright, &lblProductName, &lblVersion, &Timer1}) {}

FakeMainWindow::FakeMainWindow() {
    Me.setPlace({0, 2000, 10020, 10305});
    TxtLastBackup.setPlace({240, 120, 7695, 375});
    Label1.setPlace({240, 720, 8775, 375});
    LstSelectedFiles.setPlace({240, 1080, 9375, 2010});
    Shape1.setPlace({9240, 1080, 975, 975});
    Shape1.setVisible(false);
    Cmd_Backup.setPlace({240, 3240, 2175, 495});
    CmdSelectFiles.setPlace({5040, 3240, 2175, 375});
    CmdVerwijder.setPlace({7440, 3240, 2175, 375});
    fraDirectory.setPlace({240, 4320, 9375, 2655});
    TargetDrive.setPlace({120, 240, 2655, 315});
    TargetDirectories.setPlace({3000, 240, 2775, 1440});
    TargetFileLst.setPlace({6000, 240, 3015, 1455});
    LblStation.setPlace({225, 765, 2625, 1590});
    Lbl_InhoudDir.setPlace({6000, 1800, 3015, 615});
    CmdDeleteDir.setPlace({2955, 1890, 2775, 615});
    CmdDeleteDir.setVisible(false);
    CmdVervers.setPlace({2955, 1890, 2775, 615});
    CmdVervers.setVisible(false);
    CmdVervers.setCaption("Ververs");
    CmdRestore.setPlace({240, 7080, 2175, 495});
    CmdRestore.setVisible(false);
    PicRestore.setPlace({0, 7155, 10020, 2775});
    LblRestore[0].setPlace({120, 105, 9450, 435});
    LblRestore[1].setPlace({120, 450, 9465, 1635});
    CmdWizRestore[0].setPlace({7365, 2175, 2160, 405});
    CmdWizRestore[1].setPlace({4950, 2190, 2160, 405});
    CmdWizRestore[2].setPlace({2595, 2205, 2160, 405});
    shareFocus(focus, Me, TxtLastBackup, LstSelectedFiles, Cmd_Backup, CmdSelectFiles,
               CmdVerwijder, TargetDrive, TargetDirectories, TargetFileLst, CmdDeleteDir,
               CmdVervers, CmdRestore, CmdWizRestore[0], CmdWizRestore[1], CmdWizRestore[2]);
}

FakeMainWindow::~FakeMainWindow() = default;

nv::FrmMain& FakeMainWindow::form() {
    if (!form_) {
        nv::FrmMain::Controls c{&Me,
                                &TxtLastBackup,
                                &Label1,
                                &LstSelectedFiles,
                                &Shape1,
                                &Cmd_Backup,
                                &CmdSelectFiles,
                                &CmdVerwijder,
                                &fraDirectory,
                                &TargetDrive,
                                &TargetDirectories,
                                &TargetFileLst,
                                &LblStation,
                                &Lbl_InhoudDir,
                                &CmdDeleteDir,
                                &CmdVervers,
                                &CmdRestore,
                                &PicRestore,
                                {&LblRestore[0], &LblRestore[1]},
                                {&CmdWizRestore[0], &CmdWizRestore[1], &CmdWizRestore[2]},
                                &StatusBar,
                                &Timer1,
                                &MoVoegToe,
                                &MoVerwijder,
                                &MoAfsluiten,
                                &moBackUp,
                                &moRestore,
                                &MoHelp,
                                &MoAbout};
        form_ = std::make_unique<nv::FrmMain>(c, *this);
    }
    return *form_;
}

std::unique_ptr<nv::FormFace<nv::Frm_Copy>> FakeMainWindow::loadCopyWindow() {
    copyWindows.push_back(std::make_unique<FakeCopyWindow>());
    return std::make_unique<Borrowed<nv::Frm_Copy>>(*copyWindows.back());
}

std::unique_ptr<nv::FormFace<nv::frmAbout>> FakeMainWindow::loadAbout() {
    auto about = std::make_unique<FakeAboutWindow>();
    ++aboutShown;
    FakeAboutWindow* window = about.get();
    about->Me.whileModal = [this, window] {
        if (whileAbout)
            whileAbout(*window);
    };
    return about;
}

void FakeMainWindow::runWithoutInput(const std::function<void()>& work) {
    if (beforeCopy)
        beforeCopy();
    work();
}

std::string FakeMainWindow::buttonState() const {
    std::string state;
    for (bool on : {Cmd_Backup.enabled(), CmdDeleteDir.enabled(), CmdSelectFiles.enabled(),
                    CmdVerwijder.enabled(), CmdVervers.visible(), moBackUp.enabled(),
                    moRestore.enabled(), CmdRestore.visible()})
        state += on ? '1' : '0';
    return state;
}

} // namespace nvtest
