// The main window: its controls and menus, its load, its size and the commands of its menus.
#include "mainwindow/qt/FrmMain.h"

#include "backup/BackupRun.h"
#include "mainwindow/StatusTexts.h"
#include "mainwindow/TargetRoot.h"
#include "mainwindow/qt/FrmMainBackupWindows.h"
#include "mainwindow/qt/MainWindowKit.h"
#include "mainwindow/qt/SelectedFilesList.h"
#include "mainwindow/qt/TargetLists.h"
#include "platform/FailureText.h"
#include "platform/FileFailure.h"
#include "platform/qt/ControlNames.h"
#include "platform/qt/SansFont.h"
#include "platform/qt/Twips.h"
#include "platform/qt/WrappingButton.h"
#include "sidewindows/qt/FrmAbout.h"
#include "startup/AppSettings.h"
#include "startup/MsgBox.h"

#include <QCoreApplication>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenuBar>
#include <QPushButton>
#include <QScreen>
#include <QStatusBar>
#include <QTimer>
#include <QVBoxLayout>
#include <functional>

namespace nv {

namespace {

constexpr int kMinimumHeight = 9000;
const QColor kRed(255, 0, 0);
// A red and a scroll-bar grey dark and light enough to read: 4.9 to 1.
const QColor kLineRed(192, 0, 0);
const QColor kScrollBarFace(224, 224, 224);

void colourText(QWidget* widget, const QColor& colour) {
    QPalette palette = widget->palette();
    palette.setColor(QPalette::WindowText, colour);
    palette.setColor(QPalette::Text, colour);
    widget->setPalette(palette);
}

WrappingButton* button(QWidget* parent, const char* name, const QString& caption, QRect where,
                       bool bold = false) {
    auto* made = named(new WrappingButton(caption, parent), name, {});
    made->setGeometry(where);
    if (bold)
        made->setFont(sansFont(9.75, true));
    return made;
}

} // namespace

FrmMain::FrmMain(QWidget* parent) : QMainWindow(parent) {
    setObjectName("FrmMain");
    setWindowTitle("Norvale Backup & Restore ");
    setAccessibleName(windowTitle());
    setFont(sansFont(8.25));

    auto* central = new QWidget(this);
    auto* column = new QVBoxLayout(central);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    auto* canvas = new QWidget(central);
    canvas->setObjectName("FrmMainCanvas");
    column->addWidget(canvas, 1);
    PicRestore = named(new QWidget(central), "PicRestore", "Terugzetten stap voor stap");
    PicRestore->setFixedHeight(twips(2775));
    PicRestore->hide();
    column->addWidget(PicRestore);
    setCentralWidget(central);

    buildControls(canvas);
    buildWizardPanel(canvas);
    buildMenus();
    buildStatusBar();
    setTabOrder();

    Timer1 = new QTimer(this);
    Timer1->setObjectName("Timer1");
    Timer1->setInterval(1000);
    connect(Timer1, &QTimer::timeout, this, &FrmMain::Timer1_Timer);
    connect(CmdVervers, &QPushButton::clicked, this, &FrmMain::CmdVervers_Click);

    resize(twips(10020), twips(10305));
}

void FrmMain::buildControls(QWidget* canvas) {
    TxtLastBackup = named(new QLineEdit(canvas), "TxtLastBackup", "Laatste backup");
    TxtLastBackup->setGeometry(twipsRect(240, 120, 7695, 375));
    TxtLastBackup->setFont(sansFont(9.75));
    QPalette palette = TxtLastBackup->palette();
    palette.setColor(QPalette::Text, kLineRed);
    palette.setColor(QPalette::Base, kScrollBarFace);
    TxtLastBackup->setPalette(palette);

    Label1 =
        named(new QLabel("Onderstaande bestanden worden naar de backupschijf verzonden", canvas),
              "Label1", {});
    Label1->setGeometry(twipsRect(240, 720, 8775, 375));
    Label1->setAlignment(Qt::AlignLeft | Qt::AlignTop);

    LstSelectedFiles =
        named(new SelectedFilesList(canvas), "LstSelectedFiles", "Geselecteerde bestanden");
    LstSelectedFiles->setGeometry(twipsRect(240, 1080, 9375, 2010));
    LstSelectedFiles->setSelectionMode(QAbstractItemView::ExtendedSelection);

    WrappingButton* backUp =
        button(canvas, "Cmd_Backup", "Back Up", twipsRect(240, 3240, 2175, 495), true);
    // The style would lighten a green given to the palette; the face is painted as it is.
    backUp->setFace(QColor(0, 192, 0));
    Cmd_Backup = backUp;
    CmdSelectFiles = button(canvas, "CmdSelectFiles", "Voeg bestand toe aan lijst",
                            twipsRect(5040, 3240, 2175, 375));
    CmdVerwijder = button(canvas, "CmdVerwijder", "Verwijder bestand uit lijst",
                          twipsRect(7440, 3240, 2175, 375));

    fraDirectory = named(new QGroupBox("Inhoud Backup schijf", canvas), "fraDirectory", {});
    fraDirectory->setGeometry(twipsRect(240, 4320, 9375, 2655));
    // The wizard moves the frame over the buttons, which it must then hide, not show through.
    fraDirectory->setAutoFillBackground(true);
    TargetDrive = named(new DriveListBox(fraDirectory), "TargetDrive", "Doelstation");
    // Screen readers on Linux name a drop-down list by its entry; the role goes here.
    TargetDrive->setAccessibleDescription("Doelstation");
    TargetDrive->setGeometry(twipsRect(120, 240, 2655, 315));
    TargetDirectories = named(new DirListBox(fraDirectory), "TargetDirectories", "Mappen");
    TargetDirectories->setGeometry(twipsRect(3000, 240, 2775, 1440));
    TargetFileLst = named(new FileListBox(fraDirectory), "TargetFileLst", "Bestanden");
    TargetFileLst->setGeometry(twipsRect(6000, 240, 3015, 1455));
    LblStation = named(new QLabel(fraDirectory), "LblStation", {});
    LblStation->setGeometry(twipsRect(225, 765, 2625, 1590));
    LblStation->setFont(sansFont(9.75, true));
    LblStation->setWordWrap(true);
    LblStation->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    colourText(LblStation, kRed);
    Lbl_InhoudDir = named(new QLabel(fraDirectory), "Lbl_InhoudDir", {});
    Lbl_InhoudDir->setGeometry(twipsRect(6000, 1800, 3015, 615));
    Lbl_InhoudDir->setWordWrap(true);
    Lbl_InhoudDir->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    CmdDeleteDir =
        button(fraDirectory, "CmdDeleteDir", "Verwijder map", twipsRect(2955, 1890, 2775, 615));
    CmdDeleteDir->hide();
    CmdVervers =
        button(fraDirectory, "CmdVervers", "Ververs", twipsRect(2955, 1890, 2775, 615), true);
    CmdVervers->hide();

    CmdRestore = button(canvas, "CmdRestore", "Terugzetten Backup . . .",
                        twipsRect(240, 7080, 2175, 495), true);
    CmdRestore->hide();

    connect(Cmd_Backup, &QPushButton::clicked, this, &FrmMain::Cmd_Backup_Click);
    connect(CmdSelectFiles, &QPushButton::clicked, this, &FrmMain::CmdSelectFiles_Click);
    connect(CmdVerwijder, &QPushButton::clicked, this, &FrmMain::CmdVerwijder_Click);
    connect(CmdDeleteDir, &QPushButton::clicked, this, &FrmMain::CmdDeleteDir_Click);
    LstSelectedFiles->installEventFilter(this);
    TargetDrive->Change = [this] { TargetDrive_Change(); };
    TargetDirectories->Change = [this] { TargetDirectories_Change(); };
}

void FrmMain::buildMenus() {
    auto item = [this](QMenu* menu, const char* name, const QString& caption) {
        QAction* action = menu->addAction(caption);
        action->setObjectName(name);
        return action;
    };
    MnuBestand = menuBar()->addMenu("&Bestand");
    MnuBestand->setObjectName("MnuBestand");
    MoVoegToe = item(MnuBestand, "MoVoegToe", "Voeg bestand toe");
    MoVerwijder = item(MnuBestand, "MoVerwijder", "Verwijder uit lijst");
    MoAfsluiten = item(MnuBestand, "MoAfsluiten", "Afsluiten");
    mnuExecute = menuBar()->addMenu("&Uitvoeren");
    mnuExecute->setObjectName("mnuExecute");
    moBackUp = item(mnuExecute, "moBackUp", "Back up");
    moRestore = item(mnuExecute, "moRestore", "Terugzetten backup (stap voor stap)");
    moRestore->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_R));
    MnuHelp = menuBar()->addMenu("&Help");
    MnuHelp->setObjectName("MnuHelp");
    MoHelp = item(MnuHelp, "MoHelp", "Help F1");
    MoAbout = item(MnuHelp, "MoAbout", "About");

    // A menu entry's window or box opens once the menu has closed and answered, so a screen
    // reader that chose the entry is not kept waiting for the window to close.
    const auto later = Qt::QueuedConnection;
    connect(moBackUp, &QAction::triggered, this, &FrmMain::Cmd_Backup_Click, later);
    connect(moRestore, &QAction::triggered, this, &FrmMain::CmdRestore_Click, later);
    connect(MoVoegToe, &QAction::triggered, this, &FrmMain::CmdSelectFiles_Click, later);
    connect(MoVerwijder, &QAction::triggered, this, &FrmMain::CmdVerwijder_Click, later);
    connect(MoAfsluiten, &QAction::triggered, this, &FrmMain::MoAfsluiten_Click, later);
    connect(MoHelp, &QAction::triggered, this, &FrmMain::MoHelp_Click, later);
    connect(MoAbout, &QAction::triggered, this, &FrmMain::MoAbout_Click, later);
}

void FrmMain::setTabOrder() {
    QWidget* order[] = {Cmd_Backup,        CmdSelectFiles,   LstSelectedFiles, CmdVerwijder,
                        TxtLastBackup,     CmdVervers,       CmdDeleteDir,     CmdRestore,
                        CmdWizRestore[0],  CmdWizRestore[1], CmdWizRestore[2], TargetDrive,
                        TargetDirectories, TargetFileLst};
    for (std::size_t i = 1; i < std::size(order); ++i)
        QWidget::setTabOrder(order[i - 1], order[i]);
}

int FrmMain::heightTwips() const {
    return pixelsToTwips(height());
}

void FrmMain::setHeightTwips(int height) {
    resize(width(), twips(height));
}

void FrmMain::Form_Load() {
    auto& s = AppSettings;
    const std::function<void()> steps[] = {
        [&] { setStationText(""); },
        [&] { setPanelText(2, fromStd(fVersionText("Versie "))); },
        [&] { fraDirectory->move(fraDirectory->x(), Cmd_Backup->y() + twips(1080)); },
        [&] { setHeightTwips(kMinimumHeight); },
        [&] {
            for (int n = 1; n <= s.AantalFiles; ++n) {
                intLoop = static_cast<int16_t>(n);
                LstSelectedFiles->addItem(fromStd(s.strFiles[static_cast<std::size_t>(n)]));
            }
        },
        [&] { RefreshStatus(); },
        [&] { TargetDrive->setDrive(fromStd(s.DriveTarget)); },
        [&] { TargetDirectories->setPath(fromStd(fTargetRoot(s.DriveTarget))); },
        [&] {
            if (s.blnRestoreOnly) {
                Cmd_Backup->hide();
                CmdSelectFiles->hide();
                CmdVerwijder->hide();
                CmdRestore_Click();
            }
        },
        [&] { Timer1->start(); },
    };
    for (const auto& step : steps) {
        try {
            step();
        } catch (const FileFailure& failure) {
            if (failure.Number != kFailDeviceUnavailable) {
                MsgBox(std::to_string(failure.Number) + " - " + failure.Description, Buttons::OK,
                       Icon::None);
                return;
            }
            setStationText(fromStd(fDriveAbsentAtStartText(s.DriveTarget)));
            subButtons(false);
            blnDriveLost = true;
        }
    }
}

void FrmMain::Form_Resize() {
    if (isMinimized() || isMaximized() || isFullScreen())
        return;
    if (heightTwips() < kMinimumHeight)
        setHeightTwips(kMinimumHeight);
}

void FrmMain::MoHelp_Click() {
    // The key does the work, so the menu item and F1 stay one and the same.
    QCoreApplication::postEvent(this, new QKeyEvent(QEvent::KeyPress, Qt::Key_F1, Qt::NoModifier));
}

void FrmMain::MoAfsluiten_Click() {
    close();
}

void FrmMain::MoAbout_Click() {
    FrmAbout about;
    about.Form_Load();
    about.exec();
}

void FrmMain::Cmd_Backup_Click() {
    FrmMainBackupWindows windows(*this);
    nv::Cmd_Backup_Click(windows, intLoop, strBackupFolder);
}

void FrmMain::resizeEvent(QResizeEvent* event) {
    QMainWindow::resizeEvent(event);
    Form_Resize();
}

void FrmMain::showEvent(QShowEvent* event) {
    QMainWindow::showEvent(event);
    if (centred_)
        return;
    centred_ = true;
    if (QScreen* screen = this->screen()) {
        QRect area = screen->availableGeometry();
        QRect frame = frameGeometry();
        move(area.center() - QPoint(frame.width() / 2, frame.height() / 2));
    }
}

} // namespace nv
