#pragma once

#include <QComboBox>
#include <QListWidget>
#include <functional>

namespace nv {

// The drives of the machine, "C:" or "E: [LABEL]". Change comes whenever the selection moves,
// by the user or by setDrive.
class DriveListBox : public QComboBox {
public:
    explicit DriveListBox(QWidget* parent = nullptr);

    QString drive() const { return currentText(); }
    // Selects the entry of the drive the text names; FileFailure 68 when it is not available.
    void setDrive(const QString& text);
    // Reads the drives afresh; the selected entry stays, also when its drive has gone.
    void refill();

    // The change event; runs before an assignment returns, so its failures reach the caller.
    std::function<void()> Change;

protected:
    void showPopup() override;

private:
    bool refilling_ = false;
};

// The open folder with its parents above it and its subfolders below; a double click opens a
// folder. Change comes whenever the open folder changes.
class DirListBox : public QListWidget {
public:
    explicit DirListBox(QWidget* parent = nullptr);

    QString path() const { return path_; }
    // Opens the folder, or throws FileFailure and leaves the list as it was.
    void setPath(const QString& path);
    // Reads the subfolders of the open folder from the disk again.
    void Refresh();

    std::function<void()> Change;

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void openLater(const QString& folder);
    void show(const QString& path, const std::vector<std::string>& folders);

    QString path_;
};

// The plain files of one folder.
class FileListBox : public QListWidget {
public:
    explicit FileListBox(QWidget* parent = nullptr);

    QString path() const { return path_; }
    // Shows the files of the folder, or throws FileFailure and leaves the list as it was.
    void setPath(const QString& path);

private:
    QString path_;
};

} // namespace nv
