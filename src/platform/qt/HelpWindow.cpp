#include "platform/qt/HelpWindow.h"

#include "platform/qt/HelpSitemap.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QListWidget>
#include <QPushButton>
#include <QSplitter>
#include <QTabWidget>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace nv {

namespace {

// Pages live under this scheme so links between them resolve inside the help file.
const QString kScheme = "help";

QUrl urlOf(const QString& local) {
    QUrl url;
    url.setScheme(kScheme);
    url.setPath(local.startsWith('/') ? local : "/" + local);
    return url;
}

} // namespace

QVariant HelpBrowser::loadResource(int type, const QUrl& name) {
    if (name.scheme() != kScheme || !archive_)
        return QTextBrowser::loadResource(type, name);
    if (auto bytes = archive_->read(name.path()))
        return *bytes;
    return {};
}

HelpWindow::HelpWindow(QWidget* parent) : QMainWindow(parent) {
    setObjectName("HelpWindow");
    setWindowTitle("Help - Norvale Backup");
    resize(1120, 760);

    back = new QPushButton("< &Terug");
    back->setObjectName("HelpBack");
    back->setAccessibleName("Terug");
    forward = new QPushButton("&Vooruit >");
    forward->setObjectName("HelpForward");
    forward->setAccessibleName("Vooruit");
    back->setEnabled(false);
    forward->setEnabled(false);

    contents = new QTreeWidget;
    contents->setObjectName("HelpContents");
    contents->setAccessibleName("Inhoud");
    contents->header()->hide();
    // Whole titles, with a scroll bar when the pane is narrower than they are.
    contents->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    contents->header()->setStretchLastSection(false);
    index = new QListWidget;
    index->setObjectName("HelpIndex");
    index->setAccessibleName("Index");
    auto* tabs = new QTabWidget;
    tabs->addTab(contents, "&Inhoud");
    tabs->addTab(index, "I&ndex");

    page = new HelpBrowser;
    page->setObjectName("HelpText");
    page->setAccessibleName("Helptekst");

    auto* splitter = new QSplitter;
    splitter->addWidget(tabs);
    splitter->addWidget(page);
    splitter->setStretchFactor(1, 1);
    splitter->setSizes({370, 750});

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(back);
    buttons->addWidget(forward);
    buttons->addStretch();
    auto* central = new QWidget;
    setCentralWidget(central);
    auto* layout = new QVBoxLayout(central);
    layout->addLayout(buttons);
    layout->addWidget(splitter, 1);

    connect(back, &QPushButton::clicked, page, &QTextBrowser::backward);
    connect(forward, &QPushButton::clicked, page, &QTextBrowser::forward);
    connect(page, &QTextBrowser::backwardAvailable, back, &QPushButton::setEnabled);
    connect(page, &QTextBrowser::forwardAvailable, forward, &QPushButton::setEnabled);
    connect(page, &QTextBrowser::sourceChanged, this, &HelpWindow::markCurrent);
    connect(contents, &QTreeWidget::itemActivated, this,
            [this](QTreeWidgetItem* item) { showPage(item->data(0, Qt::UserRole).toString()); });
    connect(contents, &QTreeWidget::itemClicked, this,
            [this](QTreeWidgetItem* item) { showPage(item->data(0, Qt::UserRole).toString()); });
    connect(index, &QListWidget::itemActivated, this,
            [this](QListWidgetItem* item) { showPage(item->data(Qt::UserRole).toString()); });
    connect(index, &QListWidget::itemClicked, this,
            [this](QListWidgetItem* item) { showPage(item->data(Qt::UserRole).toString()); });
}

bool HelpWindow::load(std::unique_ptr<ChmArchive> archive) {
    QString contentsFile = archive->firstEndingIn(".hhc");
    auto sitemap = contentsFile.isEmpty() ? std::nullopt : archive->read(contentsFile);
    QList<HelpTopic> topics = sitemap ? parseSitemap(*sitemap) : QList<HelpTopic>{};
    if (topics.isEmpty() || !archive->read(urlOf(topics.front().page).path()))
        return false;

    archive_ = std::move(archive);
    page->setArchive(archive_.get());
    contents->clear();
    QList<QTreeWidgetItem*> parents;
    for (const HelpTopic& topic : topics) {
        parents.resize(std::min<qsizetype>(topic.depth, parents.size()));
        auto* item =
            parents.isEmpty() ? new QTreeWidgetItem(contents) : new QTreeWidgetItem(parents.back());
        item->setText(0, topic.name);
        item->setData(0, Qt::UserRole, topic.page);
        parents.append(item);
    }
    contents->expandAll();

    index->clear();
    QString indexFile = archive_->firstEndingIn(".hhk");
    if (auto keywords = indexFile.isEmpty() ? std::nullopt : archive_->read(indexFile)) {
        for (const HelpTopic& keyword : parseSitemap(*keywords)) {
            auto* item = new QListWidgetItem(keyword.name, index);
            item->setData(Qt::UserRole, keyword.page);
        }
    }

    page->clearHistory();
    showPage(topics.front().page);
    page->clearHistory();
    return true;
}

void HelpWindow::keyPressEvent(QKeyEvent* event) {
    // Escape closes it, as it closes the program's other side windows.
    if (event->key() == Qt::Key_Escape)
        close();
    else
        QMainWindow::keyPressEvent(event);
}

void HelpWindow::showPage(const QString& local) {
    if (!local.isEmpty())
        page->setSource(urlOf(local));
}

void HelpWindow::markCurrent(const QUrl& source) {
    for (QTreeWidgetItemIterator it(contents); *it; ++it) {
        if (urlOf((*it)->data(0, Qt::UserRole).toString()).path() == source.path()) {
            contents->setCurrentItem(*it);
            return;
        }
    }
}

} // namespace nv
