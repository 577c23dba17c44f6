#include "mainwindow/qt/FrmMain.h"

#include "backup/BackupRun.h"
#include "backup/qt/QtBackupWindows.h"
#include "mainwindow/StatusTexts.h"
#include "mainwindow/TargetRoot.h"
#include "mainwindow/qt/ShapeControl.h"
#include "mainwindow/qt/TargetLists.h"
#include "platform/DateText.h"
#include "platform/FailureText.h"
#include "platform/FileFailure.h"
#include "platform/Platform.h"
#include "platform/qt/ControlNames.h"
#include "platform/qt/Twips.h"
#include "platform/qt/WrappingButton.h"
#include "sidewindows/qt/FrmAbout.h"
#include "startup/AppSettings.h"
#include "startup/MsgBox.h"
#include "startup/Settings.h"

#include "platform/ProfileStore.h"

#include <QApplication>
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
#include <algorithm>
#include <functional>

namespace nv {

namespace {

constexpr int kMinimumHeight = 9000;
// AantalFiles is a signed 16-bit count.
constexpr int kMaximumRows = 32767;
const QColor kRed(255, 0, 0);
// A red and a scroll-bar grey dark and light enough to read: 4.9 to 1.
const QColor kLineRed(192, 0, 0);
const QColor kScrollBarFace(224, 224, 224);

QString fromStd(const std::string& text) {
    return QString::fromStdString(text);
}

QFont sansFont(double points, bool bold = false) {
    QFont font = QApplication::font();
    font.setPointSizeF(points);
    font.setBold(bold);
    return font;
}

void colourText(QWidget* widget, const QColor& colour) {
    QPalette palette = widget->palette();
    palette.setColor(QPalette::WindowText, colour);
    palette.setColor(QPalette::Text, colour);
    widget->setPalette(palette);
}

QPushButton* button(QWidget* parent, const char* name, const QString& caption, QRect where,
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
    buildWizardPanel();
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
        named(new QListWidget(canvas), "LstSelectedFiles", "Geselecteerde bestanden");
    LstSelectedFiles->setGeometry(twipsRect(240, 1080, 9375, 2010));
    LstSelectedFiles->setSelectionMode(QAbstractItemView::ExtendedSelection);

    Cmd_Backup = button(canvas, "Cmd_Backup", "Back Up", twipsRect(240, 3240, 2175, 495), true);
    QPalette green = Cmd_Backup->palette();
    green.setColor(QPalette::Button, QColor(0, 192, 0));
    Cmd_Backup->setPalette(green);
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

    Shape1 = named(new ShapeControl(canvas), "Shape1", "Markering");
    Shape1->setTwips(9240, 1080, 975, 975);
    Shape1->hide();
    // Painted on the window's surface, under the controls.
    Shape1->lower();

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

void FrmMain::buildStatusBar() {
    StatusBar = statusBar();
    StatusBar->setObjectName("StatusBar");
    StatusBar->setAccessibleName("Statusbalk");
    StatusBar->setSizeGripEnabled(true);
    StatusBar->setMinimumHeight(twips(375));
    const int widths[4] = {4000, 2000, 1440, 1440};
    const char* names[4] = {"StatusBar_Panel1", "StatusBar_Panel2", "StatusBar_Panel3",
                            "StatusBar_Panel4"};
    for (int i = 0; i < 4; ++i) {
        panels_[i] = new QLabel(StatusBar);
        panels_[i]->setObjectName(names[i]);
        panels_[i]->setFixedWidth(twips(widths[i]));
        panels_[i]->setFrameStyle(QFrame::Panel | QFrame::Sunken);
        StatusBar->addWidget(panels_[i]);
    }
    // Panels 3 and 4 are the status bar's own clock and date.
    clock_ = new QTimer(this);
    clock_->setInterval(1000);
    connect(clock_, &QTimer::timeout, this, &FrmMain::tickClock);
    clock_->start();
    tickClock();
}

void FrmMain::tickClock() {
    Moment now = platform().clock->now();
    Date today = static_cast<Date>(now >= 0 ? now / kMsPerDay : (now - kMsPerDay + 1) / kMsPerDay);
    setPanelText(3, fromStd(shortTimeText(now)));
    setPanelText(4, fromStd(shortDateText(today)));
}

void FrmMain::setTabOrder() {
    QWidget* order[] = {Cmd_Backup,        CmdSelectFiles,   LstSelectedFiles, CmdVerwijder,
                        TxtLastBackup,     CmdVervers,       CmdDeleteDir,     CmdRestore,
                        CmdWizRestore[0],  CmdWizRestore[1], CmdWizRestore[2], TargetDrive,
                        TargetDirectories, TargetFileLst};
    for (std::size_t i = 1; i < std::size(order); ++i)
        QWidget::setTabOrder(order[i - 1], order[i]);
}

QString FrmMain::panelText(int panel) const {
    return panels_[panel - 1]->text();
}

void FrmMain::setPanelText(int panel, const QString& text) {
    // The clock sets its panel every second; a text that stays the same is no repaint.
    if (panels_[panel - 1]->text() != text)
        panels_[panel - 1]->setText(text);
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
        [&] { LblStation->setText(""); },
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
            LblStation->setText(fromStd(fDriveAbsentAtStartText(s.DriveTarget)));
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

void FrmMain::RefreshStatus() {
    auto& s = AppSettings;
    TxtLastBackup->setText(fromStd(fLastBackupText(platform().clock->today(), s.LastBackup)));
    s.AantalFiles = static_cast<int16_t>(LstSelectedFiles->count());
    setPanelText(1, "Aantal files: " + QString::number(s.AantalFiles));
    Lbl_InhoudDir->setText("Bestanden in de map " + TargetDirectories->path());
}

void FrmMain::subButtons(bool blnEnable) {
    Cmd_Backup->setEnabled(blnEnable);
    CmdDeleteDir->setEnabled(blnEnable);
    CmdSelectFiles->setEnabled(blnEnable);
    CmdVerwijder->setEnabled(blnEnable);
    CmdVervers->setVisible(!blnEnable);
    moBackUp->setEnabled(blnEnable);
    moRestore->setEnabled(blnEnable);
    CmdRestore->setVisible(blnEnable);
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
    QtBackupWindows windows(*this);
    nv::Cmd_Backup_Click(windows, intLoop, strBackupFolder);
}

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
        LstSelectedFiles->addItem(fromStd(FileName));
        std::string FileTitle = FileName.substr(FileName.find_last_of('\\') + 1);
        std::size_t found = FileName.find(FileTitle);
        // The first occurrence decides, as C:\kas\kas gives C:; the title always occurs.
        if (found != std::string::npos && found >= 1)
            s.dirfrom = FileName.substr(0, found - 1);
    }
    RefreshStatus();
    INIbijwerken();
}

void FrmMain::CmdVerwijder_Click() {
    QListWidgetItem* current = LstSelectedFiles->currentItem();
    QString text = current ? current->text() : QString();
    if (text.isEmpty()) {
        MsgBox("Selecteer eerst het te verwijderen bestand uit de lijst", Buttons::OK, Icon::None,
               DefaultButton::First, "Verwijderen bestanden");
        return;
    }
    std::string question = "Wilt u het bestand " + text.toStdString() +
                           " niet meer meenemen in de backup?\r\n\r\nHet bestand blijft wel "
                           "gewoon bewaard maar loopt niet meer mee in de automatische backup";
    intRemoveRow = static_cast<int16_t>(LstSelectedFiles->currentRow());
    if (MsgBox(question, Buttons::YesNo, Icon::Question, DefaultButton::First, "Backup files") !=
        Answer::Yes)
        return;
    delete LstSelectedFiles->takeItem(intRemoveRow);
    RefreshStatus();
    INIbijwerken();
}

void FrmMain::LstSelectedFiles_KeyDown(int KeyCode, int Shift) {
    if (KeyCode != 65 || Shift != 2)
        return;
    for (int i = 0; i < LstSelectedFiles->count(); ++i)
        LstSelectedFiles->item(i)->setSelected(true);
}

void FrmMain::INIbijwerken() {
    auto& s = AppSettings;
    // One pass over the file for the whole list, which may hold 32,767 rows.
    ProfileBatch batch(*platform().profiles);
    s.strFiles.assign(static_cast<std::size_t>(std::max<int>(s.AantalFiles, 0)) + 1, "");
    // The counter is 16 bits wide, so a loop on it alone would never pass 32,767.
    for (int n = 1; n <= s.AantalFiles; ++n) {
        intLoop = static_cast<int16_t>(n);
        std::string value = LstSelectedFiles->item(n - 1)->text().toStdString();
        subWriteIni(s.strIniFile, kSectionFiles, "BackUpfile" + std::to_string(n), value);
        s.strFiles[static_cast<std::size_t>(n)] = value;
    }
    subWriteIni(s.strIniFile, kSectionBasic, "dirfrom", s.dirfrom);
    subWriteIni(s.strIniFile, kSectionBasic, "AantalFiles", std::to_string(s.AantalFiles));
}

void FrmMain::openTargetDrive() {
    auto& s = AppSettings;
    s.DriveTarget = TargetDrive->drive().left(2).toStdString();
    TargetDirectories->setPath(fromStd(s.DriveTarget + "\\"));
    subWriteIni(s.strIniFile, kSectionBasic, "DriveTarget", s.DriveTarget);
    LblStation->setText("");
    subButtons(true);
}

void FrmMain::TargetDrive_Change() {
    try {
        openTargetDrive();
    } catch (const FileFailure&) {
        LblStation->setText("Station niet aangesloten of er zit geen kaart of data stick in. Sluit "
                            "het station aan en druk op 'Ververs'\r\n");
        subButtons(false);
        Timer1->start();
    }
}

void FrmMain::CmdVervers_Click() {
    try {
        openTargetDrive();
    } catch (const FileFailure&) {
        // "Ververs" alone stays silent when the drive is still not there.
    }
}

void FrmMain::Timer1_Timer() {
    auto& s = AppSettings;
    try {
        // The probe and the compare use the letters alone: a volume label behind them is no path.
        // The probe asks whether the drive can be reached, not for a name from its root, which
        // may hold thousands of files and is read again every second.
        QString drive = TargetDrive->drive().left(2);
        if (drive.size() < 2 || !platform().drives->ready(static_cast<char>(drive[0].toLatin1())))
            throw fileFailure(kFailDeviceUnavailable);
        bool same = fromStd(s.DriveTarget) == drive;
        if (blnDriveLost) {
            TargetDrive->setDrive(fromStd(s.DriveTarget));
            if (same)
                TargetDrive_Change();
            blnDriveLost = false;
        }
    } catch (const FileFailure&) {
        if (LblStation->text().isEmpty())
            LblStation->setText("U heeft het station " + TargetDrive->drive() +
                                " ontkoppeld, sluit deze weer aan\r\n");
        QString caption = LblStation->text();
        if (caption.endsWith(" . . ."))
            caption.chop(6);
        else
            caption += " .";
        LblStation->setText(caption);
        blnDriveLost = true;
    }
}

void FrmMain::CmdDeleteDir_Click() {
    const std::string several = "U heeft meerdere directories in deze file staan, u dient deze "
                                "\u00e9\u00e9n voor \u00e9\u00e9n te verwijderen";
    std::string path = TargetDirectories->path().toStdString();
    if (TargetDirectories->path().size() < 4) {
        MsgBox("Kan de gehele schijf niet verwijderen", Buttons::OK, Icon::None);
    } else if (MsgBox("Wilt u de map " + path + " verwijderen?", Buttons::YesNo, Icon::Question,
                      DefaultButton::First, "Verwijderen Map") == Answer::Yes) {
        try {
            platform().files->deleteByPattern(path + "\\*.*");
            setPanelText(1, "Files verwijderd");
            platform().files->removeFolder(path);
        } catch (const FileFailure&) {
            MsgBox(several, Buttons::OK, Icon::None);
        }
    }
    try {
        TargetDirectories->setPath(fromStd(AppSettings.DriveTarget + "\\"));
        TargetDirectories->Refresh();
        RefreshStatus();
    } catch (const FileFailure&) {
        MsgBox(several, Buttons::OK, Icon::None);
    }
}

void FrmMain::TargetDirectories_Change() {
    QString path = TargetDirectories->path();
    TargetFileLst->setPath(path);
    if (path.size() > 3) {
        CmdDeleteDir->setVisible(true);
        CmdDeleteDir->setText("Verwijder " + path);
    } else {
        CmdDeleteDir->setVisible(false);
    }
    Lbl_InhoudDir->setText("Bestanden in de map " + path);
}

bool FrmMain::eventFilter(QObject* watched, QEvent* event) {
    if (watched == LstSelectedFiles && event->type() == QEvent::KeyPress) {
        auto* key = static_cast<QKeyEvent*>(event);
        Qt::KeyboardModifiers mods = key->modifiers() & ~Qt::KeypadModifier;
        int shift = (mods & Qt::ShiftModifier ? 1 : 0) | (mods & Qt::ControlModifier ? 2 : 0) |
                    (mods & Qt::AltModifier ? 4 : 0);
        LstSelectedFiles_KeyDown(key->key() == Qt::Key_A ? 65 : key->key(), shift);
        // The list's own select-all is the same key; one of the two is enough.
        if (key->key() == Qt::Key_A && shift == 2)
            return true;
    }
    return QMainWindow::eventFilter(watched, event);
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
