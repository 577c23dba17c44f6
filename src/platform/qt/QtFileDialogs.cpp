#include "platform/qt/QtFileDialogs.h"

#include "platform/DriveFormConversion.h"
#include "platform/FileFailure.h"

#include <QFileDialog>

namespace nv {

std::string QtFileDialogs::showOpen(const std::string& title, const std::string& initDir) {
    QString start;
    try {
        start = QString::fromStdString(nativeFormOf(initDir));
    } catch (const FileFailure&) {
        // A start folder on a drive that has gone leaves the dialog where it likes.
    }
    QFileDialog dialog(nullptr, QString::fromStdString(title), start);
    dialog.setObjectName("CdlFile");
    dialog.setFileMode(QFileDialog::ExistingFile);
    dialog.setAcceptMode(QFileDialog::AcceptOpen);
    dialog.setLabelText(QFileDialog::Accept, "&Openen");
    dialog.setLabelText(QFileDialog::Reject, "Annuleren");
    dialog.setLabelText(QFileDialog::LookIn, "Zoeken in:");
    dialog.setLabelText(QFileDialog::FileName, "Bestandsnaam:");
    dialog.setLabelText(QFileDialog::FileType, "Bestandstypen:");
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return "";
    try {
        return driveFormOf(dialog.selectedFiles().first().toStdString());
    } catch (const FileFailure&) {
        return "";
    }
}

} // namespace nv
