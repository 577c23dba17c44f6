#pragma once

#include "platform/qt/QtControl.h"

class QLabel;
class QMovie;
class QProgressBar;

namespace nv {

class QtProgressBar : public QtControl<ProgressBar> {
public:
    explicit QtProgressBar(QProgressBar* bar);
    int max() const override;
    void setMax(int maximum) override;
    int value() const override;
    void setValue(int value) override;

private:
    QProgressBar* bar_;
};

// A clip played in a label, as an animated GIF, which Qt plays without plug-ins.
class QtAnimation : public QtControl<Animation> {
public:
    explicit QtAnimation(QLabel* label);
    std::string clipFileName() const override { return "FILECOPY.GIF"; }
    // False also for a file that starts like a clip but breaks off before its first picture.
    bool open(const std::string& path) override;
    void play() override;
    void stop() override;

    QMovie* clip() const { return clip_; }

private:
    QLabel* label_;
    QMovie* clip_ = nullptr;
};

} // namespace nv
