#pragma once

#include "platform/qt/ChmArchive.h"

#include <QMainWindow>
#include <QTextBrowser>

#include <memory>

class QListWidget;
class QPushButton;
class QTreeWidget;

namespace nv {

// Shows the pages of a help file and the pictures on them, straight from the file.
class HelpBrowser : public QTextBrowser {
public:
    using QTextBrowser::QTextBrowser;
    void setArchive(const ChmArchive* archive) { archive_ = archive; }
    QVariant loadResource(int type, const QUrl& name) override;

private:
    const ChmArchive* archive_ = nullptr;
};

// The help window: the contents and the index beside the page, with back and forward.
class HelpWindow : public QMainWindow {
public:
    explicit HelpWindow(QWidget* parent = nullptr);

    // Takes the file and shows its first page; false, and nothing changed, when the file
    // holds no contents or its first page cannot be read.
    bool load(std::unique_ptr<ChmArchive> archive);

    QTreeWidget* contents;
    QListWidget* index;
    HelpBrowser* page;
    QPushButton* back;
    QPushButton* forward;

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void showPage(const QString& local);
    void markCurrent(const QUrl& source);

    std::unique_ptr<ChmArchive> archive_;
};

} // namespace nv
