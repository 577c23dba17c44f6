#pragma once

#include "mainwindow/FrmMain.h"
#include "win32/AboutWindow.h"
#include "win32/AccessibleName.h"
#include "win32/Adapters.h"
#include "win32/CopyWindow.h"
#include "win32/SansFont.h"
#include "win32/Win32Frame.h"
#include "win32/Win32Lists.h"
#include "win32/Win32Shape.h"
#include "win32/Win32StatusBar.h"
#include "win32/Win32Window.h"
#include "win32/WindowClasses.h"

namespace nv::win32 {

// The main window over FrmMain: the backup list, the target frame, the wizard's panel at the
// foot, menus and status bar.
class MainWindow : public FormFace<FrmMain>, public FrmMainFace {
public:
    MainWindow()
        : window_(createTopLevel(kMainWindowClass, "Norvale Backup & Restore ",
                                 WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN, WS_EX_CONTROLPARENT, 10020,
                                 9000)),
          hwnd_(window_.hwnd()) {
        window_.centreAtFirstShow = true;
        const FrmMain::Controls controls = layOut();
        window_.layOut = [this] { placeFootPanels(); };
        placeFootPanels();
        form_ = std::make_unique<FrmMain>(controls, *this);
    }
    ~MainWindow() override {
        if (keyRoutes().acceleratorWindow == hwnd_)
            keyRoutes().acceleratorWindow = nullptr;
        DestroyAcceleratorTable(accelerators_);
    }

    FrmMain& form() override { return *form_; }
    std::unique_ptr<FormFace<Frm_Copy>> loadCopyWindow() override {
        return std::make_unique<CopyWindow>(hwnd_);
    }
    std::unique_ptr<FormFace<frmAbout>> loadAbout() override {
        return std::make_unique<AboutWindow>();
    }
    void runWithoutInput(const std::function<void()>& work) override { runWithoutUserInput(work); }
    // Only the help key is ever sent; it goes the way a press of F1 goes.
    void sendKeys(const std::string& keys) override {
        if (keys == "{F1}")
            PostMessageW(hwnd_, WM_KEYDOWN, VK_F1, 1);
    }

    Win32Window& window() { return window_; }

private:
    static constexpr Rgb kRed{255, 0, 0};
    // A red and a scroll-bar grey dark and light enough to read: 4.9 to 1.
    static constexpr Rgb kLineRed{192, 0, 0};
    static constexpr Rgb kScrollBarFace{224, 224, 224};
    static constexpr UINT_PTR kDriveWatch = 1, kClock = 2;

    static HFONT plain() { return sansFont(8.25); }
    static HFONT bold() { return sansFont(9.75, true); }

    // A named list box of the window's, with its adapter.
    Win32ListBox* listBox(HWND parent, const TwipsRect& place, DWORD style,
                          const std::string& name) {
        HWND list = createChild(parent, L"LISTBOX", "",
                                WS_TABSTOP | WS_VSCROLL | LBS_NOTIFY | LBS_NOINTEGRALHEIGHT |
                                    LBS_HASSTRINGS | style,
                                place, plain(), WS_EX_CLIENTEDGE);
        setAccessibleName(list, name);
        return adapters_.make<Win32ListBox>(list);
    }

    // The menu bar first: it moves the client area down. The target frame comes next: in the
    // wizard it lies over the buttons above it, and a window made earlier lies over later ones.
    // Tab reaches the frame after the wizard's buttons.
    FrmMain::Controls layOut() {
        FrmMain::Controls c{};
        c.Me = &window_;
        layOutMenus(c);
        layOutTargetFrame(c);
        layOutBackupList(c);
        c.CmdRestore =
            adapters_.button(hwnd_, "Terugzetten Backup . . .", {240, 7080, 2175, 495}, bold());
        c.CmdRestore->setVisible(false);
        layOutWizardPanel(c);
        statusBar_ = adapters_.make<Win32StatusBar>(hwnd_, plain());
        c.StatusBar = statusBar_;
        auto* clock = adapters_.make<Win32Timer>(hwnd_, kClock);
        clock->Timer = [this] { statusBar_->tick(); };
        clock->setInterval(1000);
        clock->setEnabled(true);
        c.Timer1 = adapters_.make<Win32Timer>(hwnd_, kDriveWatch);
        window_.timers = {clock, static_cast<Win32Timer*>(c.Timer1)};
        return c;
    }

    void layOutTargetFrame(FrmMain::Controls& c) {
        auto* frame = adapters_.make<Win32Frame>(hwnd_, "Inhoud Backup schijf",
                                                 TwipsRect{240, 4320, 9375, 2655},
                                                 Win32Frame::Look::Group, plain());
        c.fraDirectory = frame;
        HWND inside = frame->hwnd();
        c.CmdVervers = adapters_.button(inside, "Ververs", {2955, 1890, 2775, 615}, bold());
        c.CmdVervers->setVisible(false);
        c.CmdDeleteDir =
            adapters_.button(inside, "Verwijder map", {2955, 1890, 2775, 615}, plain());
        c.CmdDeleteDir->setVisible(false);
        HWND drive =
            createChild(inside, L"COMBOBOX", "", WS_TABSTOP | WS_VSCROLL | CBS_DROPDOWNLIST,
                        {120, 240, 2655, 2400}, plain());
        setAccessibleName(drive, "Doelstation");
        c.TargetDrive = adapters_.make<Win32ComboBox>(drive);
        c.TargetDirectories =
            listBox(inside, {3000, 240, 2775, 1440}, LBS_OWNERDRAWFIXED, "Mappen");
        c.TargetFileLst = listBox(inside, {6000, 240, 3015, 1455}, 0, "Bestanden");
        auto* station = adapters_.label(inside, "", {225, 765, 2625, 1590}, bold());
        station->setForeColor(kRed);
        c.LblStation = station;
        c.Lbl_InhoudDir = adapters_.label(inside, "", {6000, 1800, 3015, 615}, plain());
    }

    void layOutBackupList(FrmMain::Controls& c) {
        auto* backUp =
            adapters_.button(hwnd_, "Back Up", {240, 3240, 2175, 495}, bold(), BS_OWNERDRAW);
        backUp->setFace({0, 192, 0});
        c.Cmd_Backup = backUp;
        window_.focus = backUp->hwnd();
        c.CmdSelectFiles =
            adapters_.button(hwnd_, "Voeg bestand toe aan lijst", {5040, 3240, 2175, 375}, plain());
        c.LstSelectedFiles =
            listBox(hwnd_, {240, 1080, 9375, 2010}, LBS_EXTENDEDSEL, "Geselecteerde bestanden");
        c.CmdVerwijder = adapters_.button(hwnd_, "Verwijder bestand uit lijst",
                                          {7440, 3240, 2175, 375}, plain());
        auto* lastBackup = adapters_.textBox(hwnd_, "", {240, 120, 7695, 375}, sansFont(9.75),
                                             WS_TABSTOP, WS_EX_CLIENTEDGE);
        lastBackup->setColours(kLineRed, kScrollBarFace);
        setAccessibleName(lastBackup->hwnd(), "Laatste backup");
        c.TxtLastBackup = lastBackup;
        c.Label1 =
            adapters_.label(hwnd_, "Onderstaande bestanden worden naar de backupschijf verzonden",
                            {240, 720, 8775, 375}, plain(), SS_LEFTNOWORDWRAP);
        auto* shape = adapters_.make<Win32Shape>(hwnd_);
        shape->setPlace({9240, 1080, 975, 975});
        window_.paint = [shape](HDC dc) { shape->paint(dc); };
        c.Shape1 = shape;
    }

    void layOutWizardPanel(FrmMain::Controls& c) {
        auto* panel = adapters_.make<Win32Frame>(hwnd_, "", TwipsRect{0, 0, 10020, 2775},
                                                 Win32Frame::Look::Plain, plain());
        panel->setVisible(false);
        setAccessibleName(panel->hwnd(), "Terugzetten stap voor stap");
        picRestore_ = panel->hwnd();
        c.PicRestore = panel;
        // The guide's box lies over the foot of the heading: made first, it stays on top.
        c.LblRestore[1] =
            adapters_.make<Win32Frame>(picRestore_, "", TwipsRect{120, 450, 9465, 1635},
                                       Win32Frame::Look::Box, sansFont(9.75));
        c.LblRestore[0] =
            adapters_.label(picRestore_, "", {120, 105, 9450, 435}, bold(), SS_LEFTNOWORDWRAP);
        const char* captions[3] = {"Volgende >>>", "<<< Vorige", "Stoppen"};
        const TwipsRect places[3] = {
            {7365, 2175, 2160, 405}, {4950, 2190, 2160, 405}, {2595, 2205, 2160, 405}};
        for (int i = 0; i < 3; ++i)
            c.CmdWizRestore[i] =
                adapters_.button(picRestore_, captions[i], places[i], sansFont(9.75));
    }

    void layOutMenus(FrmMain::Controls& c) {
        HMENU bar = CreateMenu(), popup = nullptr;
        UINT nextId = 100;
        auto menu = [&](const wchar_t* caption) {
            popup = CreatePopupMenu();
            AppendMenuW(bar, MF_POPUP, reinterpret_cast<UINT_PTR>(popup), caption);
        };
        auto item = [&](const char* caption) {
            auto* made = adapters_.make<Win32MenuItem>(popup, ++nextId);
            AppendMenuW(popup, MF_STRING, made->id(), wideFromUtf8(caption).c_str());
            window_.menuItems.push_back(made);
            return made;
        };
        menu(L"&Bestand");
        c.MoVoegToe = item("Voeg bestand toe");
        c.MoVerwijder = item("Verwijder uit lijst");
        c.MoAfsluiten = item("Afsluiten");
        menu(L"&Uitvoeren");
        c.moBackUp = item("Back up");
        auto* stepByStep = item("Terugzetten backup (stap voor stap)\tCtrl+R");
        c.moRestore = stepByStep;
        menu(L"&Help");
        c.MoHelp = item("Help F1");
        c.MoAbout = item("About");
        SetMenu(hwnd_, bar);
        ACCEL restore{FCONTROL | FVIRTKEY, 'R', static_cast<WORD>(stepByStep->id())};
        accelerators_ = CreateAcceleratorTableW(&restore, 1);
        keyRoutes().acceleratorWindow = hwnd_;
        keyRoutes().accelerators = accelerators_;
    }

    // The wizard's panel stands at the foot of the client area, above the status bar.
    void placeFootPanels() {
        if (!statusBar_)
            return;
        SendMessageW(statusBar_->hwnd(), WM_SIZE, 0, 0);
        RECT client, bar;
        GetClientRect(hwnd_, &client);
        GetWindowRect(statusBar_->hwnd(), &bar);
        const int height = pixelsOf(2775);
        SetWindowPos(picRestore_, nullptr, 0, client.bottom - (bar.bottom - bar.top) - height,
                     client.right, height, SWP_NOZORDER | SWP_NOACTIVATE);
    }

    Win32Window window_;
    Adapters adapters_;
    HWND hwnd_;
    HWND picRestore_ = nullptr;
    Win32StatusBar* statusBar_ = nullptr;
    HACCEL accelerators_ = nullptr;
    std::unique_ptr<FrmMain> form_;
};

} // namespace nv::win32
