#include "startup/Main.h"
#include "platform/Platform.h"
#include "platform/qt/HelpKey.h"
#include "platform/qt/QtFileDialogs.h"
#include "platform/qt/QtHelpViewer.h"
#include "platform/qt/QtMessageBoxes.h"
#include "platform/qt/QtShell.h"
#include "production/KnownFile.h"
#include "startup/AppSettings.h"
#include "startup/OpenHelp.h"
#include "startup/qt/SingleInstance.h"
#include "startup/qt/StartWindows.h"

#include <QApplication>
#include <QIcon>
#include <QLibraryInfo>
#include <QTranslator>

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    QApplication::setApplicationName(QString::fromStdString(nv::App.Title));
    QApplication::setApplicationVersion(QString::fromStdString(nv::fVersionText("")));
    QIcon icon;
    for (const char* size : {"", "-48", "-32"})
        icon.addFile(QString(":/pictures/window-icon%1.png").arg(size));
    QApplication::setWindowIcon(icon);
    QApplication::setQuitOnLastWindowClosed(false);
    // The program speaks Dutch on any machine, in Qt's own dialogs too.
    QTranslator qtTexts;
    if (qtTexts.load(QLocale(QLocale::Dutch, QLocale::Netherlands), "qtbase", "_",
                     QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QApplication::installTranslator(&qtTexts);

    nv::QtMessageBoxes boxes;
    nv::QtShell shell;
    nv::QtFileDialogs dialogs;
    nv::Platform machine = nv::nativePlatform();
    machine.boxes = &boxes;
    machine.shell = &shell;
    machine.dialogs = &dialogs;
    nv::ScopedPlatform installed(machine);

    nv::QtHelpViewer viewer;
    nv::HelpKey help([&viewer] { nv::subOpenHelp(viewer); });
    app.installEventFilter(&help);

    // Before anything is read or moved: a second program on the same settings would undo the
    // first one's edits of the list.
    nv::SingleInstance instance(QString::fromStdString(nv::settingsFileOfThisStart()));
    if (!nv::goOnAsOnlyStart(instance))
        return 0;

    nv::QtStartWindows windows;
    QObject::connect(&instance, &nv::SingleInstance::comeForward, [&windows] {
        if (nv::MainWindow* main = windows.mainWindow()) {
            main->setWindowState(main->windowState() & ~Qt::WindowMinimized);
            main->raise();
            main->activateWindow();
        }
    });
    if (nv::Main(windows) == nv::MainOutcome::Ended)
        return 0;
    return app.exec();
}
