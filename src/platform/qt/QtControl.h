#pragma once

#include "platform/Controls.h"
#include "platform/qt/Twips.h"

#include <QObject>
#include <QString>
#include <QWidget>
#include <string>

namespace nv {

inline QString qt(const std::string& text) {
    return QString::fromStdString(text);
}

// A control of the window services over its widget. The place the logic set is kept in twips
// while the widget stands where it was put, so that a glide of whole twips never drifts by
// rounding to pixels and back.
template <typename Base> class QtControl : public QObject, public Base {
public:
    explicit QtControl(QWidget* widget) : widget_(widget) {}

    bool visible() const override { return !widget_->isHidden(); }
    void setVisible(bool visible) override { widget_->setVisible(visible); }
    bool enabled() const override { return widget_->isEnabled(); }
    void setEnabled(bool enabled) override { widget_->setEnabled(enabled); }
    TwipsRect place() const override {
        const QRect now = pixels();
        return now == placed_ ? place_ : twipsOf(now);
    }
    // Kept before the move, since a resize may bring the logic back here first.
    void setPlace(const TwipsRect& place) override {
        place_ = place;
        placed_ = pixelsOf(place);
        setPixels(placed_);
    }
    void setFocus() override { widget_->setFocus(); }

    QWidget* widget() const { return widget_; }

protected:
    virtual QRect pixels() const { return widget_->geometry(); }
    virtual void setPixels(const QRect& pixels) { widget_->setGeometry(pixels); }

    QWidget* widget_;

private:
    TwipsRect place_;
    QRect placed_;
};

// A control with nothing beyond its place: a panel.
using QtPlainControl = QtControl<Control>;

} // namespace nv
