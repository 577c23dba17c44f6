#pragma once

#include <QObject>

#include <functional>
#include <string>

namespace nv {

// F1 in any window of the program hands the help file to open, which shows it. The file is
// asked for at each press, since the program learns where it lies only after the key is in place.
class HelpKey : public QObject {
public:
    using HelpFile = std::function<std::string()>;
    using Open = std::function<void(const std::string&)>;
    HelpKey(HelpFile helpFile, Open open)
        : helpFile_(std::move(helpFile)), open_(std::move(open)) {}

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    HelpFile helpFile_;
    Open open_;
};

} // namespace nv
