#include "platform/qt/QtProgress.h"

#include "platform/DriveFormConversion.h"
#include "platform/FileFailure.h"

#include <QLabel>
#include <QMovie>
#include <QProgressBar>
#include <memory>

namespace nv {

QtProgressBar::QtProgressBar(QProgressBar* bar) : QtControl(bar), bar_(bar) {}

int QtProgressBar::max() const {
    return bar_->maximum();
}

void QtProgressBar::setMax(int maximum) {
    bar_->setMaximum(maximum);
}

int QtProgressBar::value() const {
    return bar_->value();
}

void QtProgressBar::setValue(int value) {
    bar_->setValue(value);
}

QtAnimation::QtAnimation(QLabel* label) : QtControl(label), label_(label) {}

bool QtAnimation::open(const std::string& path) {
    QString native;
    try {
        native = QString::fromStdString(nativeFormOf(path));
    } catch (const FileFailure&) {
        return false;
    }
    auto clip = std::make_unique<QMovie>(native, QByteArray(), label_);
    if (!clip->isValid() || !clip->jumpToFrame(0) || clip->currentImage().isNull())
        return false;
    delete clip_;
    clip_ = clip.release();
    label_->setMovie(clip_);
    return true;
}

void QtAnimation::play() {
    if (clip_)
        clip_->start();
}

void QtAnimation::stop() {
    if (clip_)
        clip_->stop();
}

} // namespace nv
