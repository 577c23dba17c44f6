#include "mainwindow/StatusTexts.h"

#include "platform/DateText.h"

namespace nv {

std::string fLastBackupText(Date today, std::optional<Date> lastBackup) {
    // A text in the file that is no date tells nothing of a backup, least of all one of today.
    if (!lastBackup)
        return "Laatste backup gemaakt op: onbekend";
    int days = today - *lastBackup;
    std::string tail = days == 0 ? " (Vandaag)" : " (" + std::to_string(days) + " dagen geleden)";
    return "Laatste backup gemaakt op: " + mediumDateText(*lastBackup) + tail;
}

std::string fDriveAbsentAtStartText(const std::string& driveTarget) {
    return "Het doelstation " + driveTarget +
           " is niet aangesloten. Sluit deze aan of selecteer een ander station hierboven\r\n";
}

} // namespace nv
