#include "startup/Main.h"
#include "mainwindow/StartWindows.h"
#include "platform/Platform.h"
#include "platform/qt/QtMessageBoxes.h"
#include "startup/AppSettings.h"

#include <QApplication>

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    QApplication::setApplicationName(QString::fromStdString(nv::App.Title));
    QApplication::setApplicationVersion(
        QString("%1.%2.%3").arg(nv::App.Major).arg(nv::App.Minor).arg(nv::App.Revision));

    nv::QtMessageBoxes boxes;
    nv::Platform machine = nv::nativePlatform();
    machine.boxes = &boxes;
    nv::platform() = machine;

    nv::QtStartWindows windows;
    if (nv::Main(windows) == nv::MainOutcome::Ended)
        return 0;
    // The program lives until its last window has closed.
    return app.exec();
}
