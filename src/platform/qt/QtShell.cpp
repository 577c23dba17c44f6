#include "platform/qt/QtShell.h"

#include "platform/DriveFormConversion.h"
#include "platform/FileFailure.h"

#include <QDesktopServices>
#include <QFile>
#include <QUrl>

namespace nv {

namespace {

// The address of an internet shortcut: the value of its "url" key, blanks around it ignored.
QString shortcutAddress(const QString& native) {
    QFile file(native);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    while (!file.atEnd()) {
        QString line = QString::fromLatin1(file.readLine()).trimmed();
        int equals = line.indexOf('=');
        if (equals > 0 && line.left(equals).trimmed().compare("url", Qt::CaseInsensitive) == 0)
            return line.mid(equals + 1).trimmed();
    }
    return {};
}

} // namespace

void QtShell::open(const std::string& path) {
    QString native;
    try {
        native = QString::fromStdString(nativeFormOf(path));
    } catch (const FileFailure&) {
        return;
    }
    if (native.endsWith(".url", Qt::CaseInsensitive)) {
        QString address = shortcutAddress(native);
        if (!address.isEmpty())
            QDesktopServices::openUrl(QUrl(address));
        return;
    }
    QDesktopServices::openUrl(QUrl::fromLocalFile(native));
}

} // namespace nv
