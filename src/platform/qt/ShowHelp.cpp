#include "platform/qt/ShowHelp.h"

#include "platform/DriveFormConversion.h"
#include "platform/FileFailure.h"
#include "platform/qt/HelpWindow.h"
#include "startup/MsgBox.h"

#include <QApplication>
#include <QFileInfo>
#include <QPointer>

namespace nv {

namespace {

QPointer<HelpWindow> theWindow;

} // namespace

HelpWindow* helpWindow() {
    return theWindow;
}

void showHelp(const std::string& helpFile) {
    QString native;
    try {
        native = QString::fromStdString(nativeFormOf(helpFile));
    } catch (const FileFailure&) {
    }
    if (native.isEmpty() || !QFileInfo(native).isFile()) {
        MsgBox("Het helpbestand '" + helpFile + "' kan niet gevonden worden.", Buttons::OK,
               Icon::Exclamation);
        return;
    }
    auto archive = ChmArchive::open(native);
    if (!theWindow) {
        theWindow = new HelpWindow;
        theWindow->setAttribute(Qt::WA_DeleteOnClose);
    }
    if (!archive || !theWindow->load(std::move(archive))) {
        if (!theWindow->isVisible())
            delete theWindow;
        MsgBox("Het helpbestand '" + helpFile + "' kan niet gelezen worden.", Buttons::OK,
               Icon::Exclamation);
        return;
    }
    // Over a modal window such as About, the help must be modal too, or it could not be used.
    QWidget* modal = QApplication::activeModalWidget();
    bool overModal = modal && modal != theWindow;
    if (theWindow->isVisible() && overModal != (theWindow->windowModality() != Qt::NonModal))
        theWindow->hide();
    theWindow->setWindowModality(overModal ? Qt::ApplicationModal : Qt::NonModal);
    theWindow->show();
    theWindow->raise();
    theWindow->activateWindow();
}

} // namespace nv
