#include "platform/qt/QtHelpViewer.h"

#include <QApplication>

namespace nv {

QtHelpViewer::~QtHelpViewer() {
    delete window_.data();
}

bool QtHelpViewer::show(const std::string& nativePath) {
    auto archive = ChmArchive::open(QString::fromStdString(nativePath));
    if (!window_) {
        window_ = new HelpWindow;
        window_->setAttribute(Qt::WA_DeleteOnClose);
    }
    if (!archive || !window_->load(std::move(archive))) {
        if (!window_->isVisible())
            delete window_.data();
        return false;
    }
    QWidget* modal = QApplication::activeModalWidget();
    const bool overModal = modal && modal != window_;
    if (window_->isVisible() && overModal != (window_->windowModality() != Qt::NonModal))
        window_->hide();
    window_->setWindowModality(overModal ? Qt::ApplicationModal : Qt::NonModal);
    window_->show();
    window_->raise();
    window_->activateWindow();
    return true;
}

} // namespace nv
