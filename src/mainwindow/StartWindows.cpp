#include "mainwindow/StartWindows.h"

#include "platform/DateText.h"
#include "startup/AppSettings.h"

#include <QLabel>
#include <QListWidget>
#include <QVBoxLayout>

namespace nv {

void QtStartWindows::loadMainWindow() {
    auto* window = new QWidget;
    window->setAttribute(Qt::WA_DeleteOnClose);
    window->setObjectName("FrmMain");
    window->setWindowTitle(QString::fromStdString(App.Title));
    auto* layout = new QVBoxLayout(window);
    auto* list = new QListWidget(window);
    list->setObjectName("LstSelectedFiles");
    list->setAccessibleName("Geselecteerde bestanden");
    for (int n = 1; n <= AppSettings.AantalFiles; ++n)
        list->addItem(QString::fromStdString(AppSettings.strFiles[static_cast<std::size_t>(n)]));
    layout->addWidget(list);
    auto* status =
        new QLabel(QString("Aantal files: %1    Doelstation: %2    Laatste backup: %3")
                       .arg(AppSettings.AantalFiles)
                       .arg(QString::fromStdString(AppSettings.DriveTarget))
                       .arg(QString::fromStdString(shortDateText(AppSettings.LastBackup))),
                   window);
    layout->addWidget(status);
    window->resize(640, 360);
    main_ = window;
}

void QtStartWindows::showMainWindow() {
    if (main_)
        main_->show();
}

} // namespace nv
