#pragma once

#include <QObject>

#include <functional>

namespace nv {

// F1 in any window of the program, installed on the application.
class HelpKey : public QObject {
public:
    explicit HelpKey(std::function<void()> pressed) : pressed_(std::move(pressed)) {}

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    std::function<void()> pressed_;
};

} // namespace nv
