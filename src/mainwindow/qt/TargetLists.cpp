#include "mainwindow/qt/TargetLists.h"

#include "mainwindow/qt/MainWindowKit.h"
#include "platform/FailureText.h"
#include "platform/Platform.h"
#include "startup/FileOps.h"

#include <QKeyEvent>
#include <QStyle>
#include <QTimer>

namespace nv {

namespace {

// "E:\Data\" and "E:\Data" are one folder; a root keeps its backslash.
QString withoutTrailingBackslash(QString path) {
    while (path.size() > 3 && path.endsWith('\\'))
        path.chop(1);
    if (path.size() == 2 && path[1] == ':')
        path += '\\';
    return path;
}

} // namespace

DriveListBox::DriveListBox(QWidget* parent) : QComboBox(parent) {
    refill();
    // A list starts on the system drive, as the machine's own lists do.
    int system = findText("C:", Qt::MatchStartsWith);
    setCurrentIndex(system >= 0 ? system : 0);
    connect(this, &QComboBox::currentIndexChanged, this, [this] {
        if (!refilling_ && Change)
            Change();
    });
}

void DriveListBox::refill() {
    QString selected = currentText();
    refilling_ = true;
    clear();
    bool kept = false;
    for (const DriveInfo& drive : platform().drives->list()) {
        QString entry = QString(QChar(drive.letter)) + ':';
        if (!drive.label.empty())
            entry += " [" + fromStd(drive.label) + "]";
        addItem(entry);
        if (!selected.isEmpty() && selected.at(0).toUpper() == QChar(drive.letter)) {
            setCurrentIndex(count() - 1);
            kept = true;
        }
    }
    if (!selected.isEmpty() && !kept) {
        addItem(selected);
        setCurrentIndex(count() - 1);
    }
    refilling_ = false;
}

void DriveListBox::setDrive(const QString& text) {
    if (text.size() < 2 || text[1] != ':' || !text[0].isLetter())
        throw fileFailure(kFailDeviceUnavailable);
    char letter = static_cast<char>(text[0].toUpper().toLatin1());
    if (!platform().drives->ready(letter))
        throw fileFailure(kFailDeviceUnavailable);
    int index = -1;
    for (int i = 0; i < count() && index < 0; ++i)
        if (itemText(i).at(0).toUpper() == QChar(letter))
            index = i;
    if (index < 0) {
        refill();
        for (int i = 0; i < count() && index < 0; ++i)
            if (itemText(i).at(0).toUpper() == QChar(letter))
                index = i;
    }
    if (index < 0)
        throw fileFailure(kFailDeviceUnavailable);
    setCurrentIndex(index);
}

void DriveListBox::showPopup() {
    refill();
    QComboBox::showPopup();
}

DirListBox::DirListBox(QWidget* parent) : QListWidget(parent) {
    setSelectionMode(QAbstractItemView::SingleSelection);
    connect(this, &QListWidget::itemDoubleClicked, this,
            [this](QListWidgetItem* item) { openLater(item->data(Qt::UserRole).toString()); });
}

void DirListBox::keyPressEvent(QKeyEvent* event) {
    // Enter opens the selected folder, as a double click does.
    if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) && currentItem()) {
        openLater(currentItem()->data(Qt::UserRole).toString());
        return;
    }
    QListWidget::keyPressEvent(event);
}

// Opening rebuilds the list, so it waits until the view has finished with the clicked item.
void DirListBox::openLater(const QString& folder) {
    QTimer::singleShot(0, this, [this, folder] {
        try {
            setPath(folder);
        } catch (const FileFailure&) {
            // A folder that has gone meanwhile simply does not open.
        }
    });
}

void DirListBox::setPath(const QString& path) {
    QString folder = withoutTrailingBackslash(path);
    auto folders = fListFolders(folder.toStdString());
    bool changed = folder != path_;
    show(folder, folders);
    if (changed && Change)
        Change();
}

void DirListBox::Refresh() {
    if (path_.isEmpty())
        return;
    show(path_, fListFolders(path_.toStdString()));
}

void DirListBox::show(const QString& path, const std::vector<std::string>& folders) {
    path_ = path;
    clear();
    const QIcon open = style()->standardIcon(QStyle::SP_DirOpenIcon);
    const QIcon closed = style()->standardIcon(QStyle::SP_DirClosedIcon);
    QStringList parts = path.split('\\', Qt::SkipEmptyParts);
    QString walked;
    int depth = 0;
    for (const QString& part : parts) {
        walked += part + '\\';
        QString opened = withoutTrailingBackslash(walked);
        auto* item = new QListWidgetItem(open, QString(depth * 2, ' ') + (depth ? part : opened));
        item->setData(Qt::UserRole, opened);
        addItem(item);
        ++depth;
    }
    setCurrentRow(count() - 1);
    QString base = path.endsWith('\\') ? path : path + '\\';
    for (const std::string& name : folders) {
        auto* item = new QListWidgetItem(closed, QString(depth * 2, ' ') + fromStd(name));
        item->setData(Qt::UserRole, base + fromStd(name));
        addItem(item);
    }
}

FileListBox::FileListBox(QWidget* parent) : QListWidget(parent) {
    setSelectionMode(QAbstractItemView::SingleSelection);
}

void FileListBox::setPath(const QString& path) {
    QString folder = withoutTrailingBackslash(path);
    auto names = fListFiles(folder.toStdString(), "*.*");
    path_ = folder;
    clear();
    for (const std::string& name : names)
        addItem(fromStd(name));
}

} // namespace nv
