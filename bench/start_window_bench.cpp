// Prints how long the program takes from its start to the first painted main window, against a
// bare Qt window, each in a fresh process, side by side in one run.
#include "platform/DriveFormConversion.h"
#include "platform/Platform.h"
#include "platform/qt/QtMessageBoxes.h"
#include "production/KnownFile.h"
#include "startup/Main.h"
#include "startup/qt/StartWindows.h"
#include "support/TestMachine.h"

#include <QApplication>
#include <QEvent>
#include <QLabel>
#include <QPushButton>
#include <QWidget>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

namespace {

// Ends the process at the first paint of a main window, wherever in the start it comes.
class FirstPaint : public QObject {
public:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Paint && watched->objectName() == "FrmMain")
            std::_Exit(0);
        return QObject::eventFilter(watched, event);
    }
};

// A bare window paints no text; the second baseline has a label and a button, and so pays for
// the fonts as every real window does.
int bareWindow(int argc, char** argv, bool withText) {
    QApplication app(argc, argv);
    QWidget window;
    if (withText) {
        (new QLabel("Onderstaande bestanden", &window))->move(10, 10);
        (new QPushButton("Back Up", &window))->move(10, 40);
    }
    window.setObjectName("FrmMain");
    window.resize(668, 600);
    FirstPaint watch;
    app.installEventFilter(&watch);
    window.show();
    return app.exec();
}

int program(int argc, char** argv, const std::string& folder) {
    QApplication app(argc, argv);
    nv::ScopedPlatform native(nv::nativePlatform());
    nv::QtMessageBoxes boxes;
    nvtest::FixedProcess process;
    process.path = nv::driveFormOf(folder);
    nv::ScopedPlatformPart<nv::MessageBoxes> useBoxes(&nv::Platform::boxes, &boxes);
    nv::ScopedPlatformPart<nv::Process> useProcess(&nv::Platform::process, &process);
    FirstPaint watch;
    app.installEventFilter(&watch);
    nv::QtStartWindows windows;
    if (nv::Main(windows) != nv::MainOutcome::Running)
        return 1;
    return app.exec();
}

double runOnce(const char* self, const std::vector<std::string>& args) {
    auto start = Clock::now();
    pid_t child = fork();
    if (child == 0) {
        std::vector<char*> argv{const_cast<char*>(self)};
        for (const auto& a : args)
            argv.push_back(const_cast<char*>(a.c_str()));
        argv.push_back(nullptr);
        execv(self, argv.data());
        _exit(127);
    }
    int status = 0;
    waitpid(child, &status, 0);
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0)
        return -1;
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

} // namespace

int main(int argc, char** argv) {
    setenv("QT_QPA_PLATFORM", "offscreen", 0);
    if (argc >= 2 && std::string(argv[1]) == "--bare")
        return bareWindow(argc, argv, false);
    if (argc >= 2 && std::string(argv[1]) == "--text")
        return bareWindow(argc, argv, true);
    if (argc >= 3 && std::string(argv[1]) == "--program")
        return program(argc, argv, argv[2]);

    // A first start on a demo install: the production files in the program's folder.
    nvtest::TempFolder temp;
    const fs::path& folder = temp.native();
    for (int row = 0; row < 11; ++row)
        if (row != 4 && row != 8 && row != 9)
            std::ofstream(folder / nv::fKnownFileName(row)) << "demo";

    const int runs = 15;
    std::vector<double> bare, text, full;
    for (int i = 0; i < runs; ++i) {
        // Alternating keeps a drifting machine from favouring any side.
        bare.push_back(runOnce(argv[0], {"--bare"}));
        text.push_back(runOnce(argv[0], {"--text"}));
        full.push_back(runOnce(argv[0], {"--program", folder.string()}));
        if (bare.back() < 0 || text.back() < 0 || full.back() < 0) {
            std::fprintf(stderr, "a run failed\n");
            return 1;
        }
    }
    double b = median(bare), t = median(text), p = median(full);
    std::printf("Time to the first painted window, median of %d fresh processes each (offscreen)\n",
                runs);
    std::printf("  bare Qt window        %7.1f ms\n", b);
    std::printf("  Qt window with text   %7.1f ms\n", t);
    std::printf("  Norvale Backup        %7.1f ms\n", p);
    std::printf("  ratio to bare window  %7.2f (target at most 1.5)\n", p / b);
    std::printf("  ratio to text window  %7.2f\n", p / t);
    return 0;
}
