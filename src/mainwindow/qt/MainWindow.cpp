#include "mainwindow/qt/MainWindow.h"

#include "backup/qt/CopyWindow.h"
#include "mainwindow/qt/SelectedFilesList.h"
#include "platform/qt/ControlNames.h"
#include "platform/qt/QtCaptions.h"
#include "platform/qt/QtLists.h"
#include "platform/qt/QtStatusBar.h"
#include "platform/qt/QtTimerAndMenu.h"
#include "platform/qt/QtWindow.h"
#include "platform/qt/RunWithoutInput.h"
#include "platform/qt/SansFont.h"
#include "platform/qt/WrappingButton.h"
#include "restore/qt/ShapeControl.h"
#include "sidewindows/qt/AboutWindow.h"

#include <QCoreApplication>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenuBar>
#include <QScreen>
#include <QStatusBar>
#include <QTimer>
#include <QVBoxLayout>

namespace nv {

namespace {

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

QLabel* label(QWidget* parent, const char* name, QRect where) {
    auto* made = named(new QLabel(parent), name, {});
    made->setGeometry(where);
    made->setWordWrap(true);
    made->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    return made;
}

QListWidget* list(QListWidget* made, QWidget* parent, const char* name, const QString& spoken,
                  QRect where) {
    made->setParent(parent);
    named(made, name, spoken)->setGeometry(where);
    made->setSelectionMode(QAbstractItemView::SingleSelection);
    return made;
}

QAction* item(QMenu* menu, const char* name, const QString& caption) {
    QAction* action = menu->addAction(caption);
    action->setObjectName(name);
    return action;
}

QMenu* menu(QMenuBar* bar, const char* name, const QString& caption) {
    QMenu* made = bar->addMenu(caption);
    made->setObjectName(name);
    return made;
}

} // namespace

template <typename Adapter, typename... Args> Adapter* MainWindow::adapt(Args&&... args) {
    auto* made = new Adapter(std::forward<Args>(args)...);
    adapters_.emplace_back(made);
    return made;
}

MainWindow::MainWindow() {
    setObjectName("FrmMain");
    setWindowTitle("Norvale Backup & Restore ");
    setAccessibleName(windowTitle());
    setFont(sansFont(8.25));
    const FrmMain::Controls controls = layOut();
    resize(twips(10020), twips(10305));
    form_ = std::make_unique<FrmMain>(controls, *this);
}

MainWindow::~MainWindow() = default;

FrmMain::Controls MainWindow::layOut() {
    FrmMain::Controls c{};
    auto* central = new QWidget(this);
    auto* column = new QVBoxLayout(central);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    auto* canvas = new QWidget(central);
    canvas->setObjectName("FrmMainCanvas");
    column->addWidget(canvas, 1);
    // The wizard's panel stands at the window's foot, under the canvas, when the wizard runs.
    auto* picRestore = named(new QWidget(central), "PicRestore", "Terugzetten stap voor stap");
    picRestore->setFixedHeight(twips(2775));
    picRestore->hide();
    column->addWidget(picRestore);
    setCentralWidget(central);
    c.Me = adapt<QtWindow>(this, central);
    c.PicRestore = adapt<QtPlainControl>(picRestore);
    layOutBackupList(canvas, c);
    layOutTargetPanel(canvas, c);
    layOutWizardPanel(picRestore, c);
    layOutMenus(c);
    layOutStatusBar(c);
    orderTabs();
    return c;
}

void MainWindow::layOutBackupList(QWidget* canvas, FrmMain::Controls& c) {
    auto* lastBackup = named(new QLineEdit(canvas), "TxtLastBackup", "Laatste backup");
    lastBackup->setGeometry(twipsRect(240, 120, 7695, 375));
    lastBackup->setFont(sansFont(9.75));
    QPalette palette = lastBackup->palette();
    palette.setColor(QPalette::Text, kLineRed);
    palette.setColor(QPalette::Base, kScrollBarFace);
    lastBackup->setPalette(palette);
    c.TxtLastBackup = adapt<QtTextBox>(lastBackup);

    auto* label1 = label(canvas, "Label1", twipsRect(240, 720, 8775, 375));
    label1->setWordWrap(false);
    label1->setText("Onderstaande bestanden worden naar de backupschijf verzonden");
    c.Label1 = adapt<QtLabel>(label1);

    auto* selected = list(new SelectedFilesList, canvas, "LstSelectedFiles",
                          "Geselecteerde bestanden", twipsRect(240, 1080, 9375, 2010));
    selected->setSelectionMode(QAbstractItemView::ExtendedSelection);
    c.LstSelectedFiles = adapt<QtListBox>(selected);

    auto* shape = named(new ShapeControl(canvas), "Shape1", "Markering");
    shape->setGeometry(twipsRect(9240, 1080, 975, 975));
    shape->hide();
    // Painted on the window's surface, under the controls.
    shape->lower();
    c.Shape1 = adapt<QtShape>(shape);

    WrappingButton* backUp =
        button(canvas, "Cmd_Backup", "Back Up", twipsRect(240, 3240, 2175, 495), true);
    // The style would lighten a green given to the palette; the face is painted as it is.
    backUp->setFace(QColor(0, 192, 0));
    c.Cmd_Backup = adapt<QtButton>(backUp);
    auto* selectFiles = button(canvas, "CmdSelectFiles", "Voeg bestand toe aan lijst",
                               twipsRect(5040, 3240, 2175, 375));
    c.CmdSelectFiles = adapt<QtButton>(selectFiles);
    auto* remove = button(canvas, "CmdVerwijder", "Verwijder bestand uit lijst",
                          twipsRect(7440, 3240, 2175, 375));
    c.CmdVerwijder = adapt<QtButton>(remove);
}

void MainWindow::layOutTargetPanel(QWidget* canvas, FrmMain::Controls& c) {
    auto* frame = named(new QGroupBox("Inhoud Backup schijf", canvas), "fraDirectory", {});
    frame->setGeometry(twipsRect(240, 4320, 9375, 2655));
    // The wizard moves the frame over the buttons, which it must then hide, not show through.
    frame->setAutoFillBackground(true);
    c.fraDirectory = adapt<QtLabel>(frame);
    auto* drive = named(new DropDownList(frame), "TargetDrive", "Doelstation");
    // Screen readers on Linux name a drop-down list by its entry; the role goes here.
    drive->setAccessibleDescription("Doelstation");
    drive->setGeometry(twipsRect(120, 240, 2655, 315));
    c.TargetDrive = adapt<QtComboBox>(drive);
    auto* folders = list(new QListWidget, frame, "TargetDirectories", "Mappen",
                         twipsRect(3000, 240, 2775, 1440));
    c.TargetDirectories = adapt<QtListBox>(folders);
    auto* files = list(new QListWidget, frame, "TargetFileLst", "Bestanden",
                       twipsRect(6000, 240, 3015, 1455));
    c.TargetFileLst = adapt<QtListBox>(files);
    auto* station = label(frame, "LblStation", twipsRect(225, 765, 2625, 1590));
    station->setFont(sansFont(9.75, true));
    colourText(station, kRed);
    c.LblStation = adapt<QtLabel>(station);
    c.Lbl_InhoudDir =
        adapt<QtLabel>(label(frame, "Lbl_InhoudDir", twipsRect(6000, 1800, 3015, 615)));
    auto* deleteDir =
        button(frame, "CmdDeleteDir", "Verwijder map", twipsRect(2955, 1890, 2775, 615));
    deleteDir->hide();
    c.CmdDeleteDir = adapt<QtButton>(deleteDir);
    auto* refresh = button(frame, "CmdVervers", "Ververs", twipsRect(2955, 1890, 2775, 615), true);
    refresh->hide();
    c.CmdVervers = adapt<QtButton>(refresh);

    auto* restore = button(canvas, "CmdRestore", "Terugzetten Backup . . .",
                           twipsRect(240, 7080, 2175, 495), true);
    restore->hide();
    c.CmdRestore = adapt<QtButton>(restore);
}

void MainWindow::layOutWizardPanel(QWidget* panel, FrmMain::Controls& c) {
    QLabel* heading = label(panel, "LblRestore_0", twipsRect(120, 105, 9450, 435));
    heading->setFont(sansFont(9.75, true));
    heading->setWordWrap(false);
    c.LblRestore[0] = adapt<QtLabel>(heading);
    QLabel* guide = label(panel, "LblRestore_1", twipsRect(120, 450, 9465, 1635));
    guide->setFont(sansFont(9.75));
    guide->setFrameStyle(QFrame::Box | QFrame::Plain);
    guide->setAutoFillBackground(true);
    guide->setMargin(twips(45));
    guide->setTextInteractionFlags(Qt::TextSelectableByMouse);
    c.LblRestore[1] = adapt<QtLabel>(guide);
    const char* names[3] = {"CmdWizRestore_0", "CmdWizRestore_1", "CmdWizRestore_2"};
    const char* captions[3] = {"Volgende >>>", "<<< Vorige", "Stoppen"};
    const QRect places[3] = {twipsRect(7365, 2175, 2160, 405), twipsRect(4950, 2190, 2160, 405),
                             twipsRect(2595, 2205, 2160, 405)};
    for (int i = 0; i < 3; ++i) {
        auto* step = named(new QPushButton(captions[i], panel), names[i], {});
        step->setGeometry(places[i]);
        step->setFont(sansFont(9.75));
        step->setAutoDefault(false);
        c.CmdWizRestore[i] = adapt<QtButton>(step);
    }
}

void MainWindow::layOutMenus(FrmMain::Controls& c) {
    QMenu* file = menu(menuBar(), "MnuBestand", "&Bestand");
    c.MoVoegToe = adapt<QtMenuItem>(item(file, "MoVoegToe", "Voeg bestand toe"));
    c.MoVerwijder = adapt<QtMenuItem>(item(file, "MoVerwijder", "Verwijder uit lijst"));
    c.MoAfsluiten = adapt<QtMenuItem>(item(file, "MoAfsluiten", "Afsluiten"));
    QMenu* execute = menu(menuBar(), "mnuExecute", "&Uitvoeren");
    c.moBackUp = adapt<QtMenuItem>(item(execute, "moBackUp", "Back up"));
    QAction* stepByStep = item(execute, "moRestore", "Terugzetten backup (stap voor stap)");
    stepByStep->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_R));
    c.moRestore = adapt<QtMenuItem>(stepByStep);
    QMenu* help = menu(menuBar(), "MnuHelp", "&Help");
    c.MoHelp = adapt<QtMenuItem>(item(help, "MoHelp", "Help F1"));
    c.MoAbout = adapt<QtMenuItem>(item(help, "MoAbout", "About"));
}

// The clock and date panels are the status bar's own; the timer is the form's drive watch.
void MainWindow::layOutStatusBar(FrmMain::Controls& c) {
    QStatusBar* bar = statusBar();
    bar->setObjectName("StatusBar");
    bar->setAccessibleName("Statusbalk");
    bar->setSizeGripEnabled(true);
    bar->setMinimumHeight(twips(375));
    QList<QLabel*> panels;
    for (int width : {4000, 2000, 1440, 1440}) {
        auto* panel = new QLabel(bar);
        panel->setObjectName(QString("StatusBar_Panel%1").arg(panels.size() + 1));
        panel->setFixedWidth(twips(width));
        panel->setFrameStyle(QFrame::Panel | QFrame::Sunken);
        bar->addWidget(panel);
        panels.append(panel);
    }
    c.StatusBar = adapt<QtStatusBar>(panels);

    auto* timer = new QTimer(this);
    timer->setObjectName("Timer1");
    c.Timer1 = adapt<QtTimer>(timer);
}

void MainWindow::orderTabs() {
    const char* const order[] = {"Cmd_Backup",        "CmdSelectFiles",  "LstSelectedFiles",
                                 "CmdVerwijder",      "TxtLastBackup",   "CmdVervers",
                                 "CmdDeleteDir",      "CmdRestore",      "CmdWizRestore_0",
                                 "CmdWizRestore_1",   "CmdWizRestore_2", "TargetDrive",
                                 "TargetDirectories", "TargetFileLst"};
    for (std::size_t i = 1; i < std::size(order); ++i)
        QWidget::setTabOrder(findChild<QWidget*>(order[i - 1]), findChild<QWidget*>(order[i]));
}

std::unique_ptr<FormFace<Frm_Copy>> MainWindow::loadCopyWindow() {
    return std::make_unique<CopyWindow>(this);
}

std::unique_ptr<FormFace<frmAbout>> MainWindow::loadAbout() {
    return std::make_unique<AboutWindow>();
}

void MainWindow::runWithoutInput(const std::function<void()>& work) {
    runWithoutUserInput(work);
}

void MainWindow::sendKeys(const std::string& keys) {
    // Only the help key is ever sent; it goes the way a press of F1 goes.
    if (keys == "{F1}")
        QCoreApplication::postEvent(this,
                                    new QKeyEvent(QEvent::KeyPress, Qt::Key_F1, Qt::NoModifier));
}

void MainWindow::showEvent(QShowEvent* event) {
    QMainWindow::showEvent(event);
    if (centred_)
        return;
    centred_ = true;
    if (QScreen* screen = this->screen()) {
        const QRect area = screen->availableGeometry();
        const QRect frame = frameGeometry();
        move(area.center() - QPoint(frame.width() / 2, frame.height() / 2));
    }
}

} // namespace nv
