// Prints how long the wizard's highlight takes to glide to step 2 in its 1000 painted steps, on
// the display the program is given (run it under xvfb-run for an X server without a screen).
#include "mainwindow/qt/MainWindow.h"
#include "platform/DriveFormConversion.h"
#include "platform/Platform.h"
#include "restore/qt/ShapeControl.h"
#include "startup/AppSettings.h"
#include "support/TestMachine.h"

#include <QApplication>
#include <QPushButton>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <unistd.h>

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    nvtest::NativeMachine machine;
    auto& s = nv::AppSettings;
    s.strIniFile = machine.temp.drive("NVbackuptool.ini");
    s.DriveTarget = "C:";
    s.LastBackup = nv::platform().clock->today();
    s.strFiles = {""};
    for (int n = 1; n <= 9; ++n)
        s.strFiles.push_back("C:\\Data\\Norvale\\bestand" + std::to_string(n) + ".dat");
    s.AantalFiles = 9;

    nv::MainWindow window;
    nv::FrmMain& form = window.form();
    auto* shape = window.findChild<nv::ShapeControl*>("Shape1");
    form.Form_Load();
    window.show();
    QCoreApplication::processEvents();

    const int rounds = 5;
    double total = 0, slowest = 0;
    int paints = 0;
    for (int i = 0; i < rounds; ++i) {
        form.CmdRestore_Click();
        QCoreApplication::processEvents();
        int before = shape->paints();
        auto start = Clock::now();
        form.CmdWizRestore_Click(0);
        double ms = std::chrono::duration<double, std::milli>(Clock::now() - start).count();
        paints = shape->paints() - before;
        total += ms;
        slowest = std::max(slowest, ms);
        form.CmdWizRestore_Click(2);
        // The next glide starts from the shape's place at start, as the first one of a run.
        form.Shape1->setPlace({9240, 1080, 975, 975});
        QCoreApplication::processEvents();
    }
    std::printf("Glide of the highlight to step 2 on platform '%s', %d rounds\n",
                qPrintable(QGuiApplication::platformName()), rounds);
    std::printf("  mean %.0f ms, slowest %.0f ms (target < 2000 ms), %d paints of the shape\n",
                total / rounds, slowest, paints);
    return 0;
}
