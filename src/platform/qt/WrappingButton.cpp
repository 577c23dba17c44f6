#include "platform/qt/WrappingButton.h"

#include <QStyleOptionButton>
#include <QStyleOptionFocusRect>
#include <QStylePainter>

namespace nv {

namespace {

// A disabled face keeps a quarter of its colour over a light grey; its caption stays above 4.5 to
// 1 on it.
const QColor kPaleGrey(208, 208, 208);
const QColor kDisabledCaption(64, 64, 64);

QColor blend(const QColor& a, const QColor& b, double share) {
    return QColor::fromRgbF(float(a.redF() * share + b.redF() * (1 - share)),
                            float(a.greenF() * share + b.greenF() * (1 - share)),
                            float(a.blueF() * share + b.blueF() * (1 - share)));
}

bool fitsIn(const QFont& font, const QRect& area, int flags, const QString& caption) {
    QRect needed = QFontMetrics(font).boundingRect(area, flags, caption);
    return needed.height() <= area.height() && needed.width() <= area.width();
}

} // namespace

void WrappingButton::setFace(const QColor& face) {
    face_ = face;
    update();
}

void WrappingButton::paintFace(QPainter& painter) const {
    const QColor face =
        isEnabled() ? (isDown() ? face_.darker(115) : face_) : blend(face_, kPaleGrey, 0.25);
    painter.fillRect(rect(), face);
    painter.setPen(face.darker(160));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

void WrappingButton::paintEvent(QPaintEvent*) {
    QStylePainter painter(this);
    QStyleOptionButton option;
    initStyleOption(&option);
    QString caption = option.text;
    option.text.clear();
    if (face_.isValid()) {
        paintFace(painter);
        if (hasFocus()) {
            QStyleOptionFocusRect focus;
            focus.initFrom(this);
            focus.rect = rect().adjusted(3, 3, -3, -3);
            painter.drawPrimitive(QStyle::PE_FrameFocusRect, focus);
        }
    } else {
        painter.drawControl(QStyle::CE_PushButton, option);
    }
    QRect area = style()->subElementRect(QStyle::SE_PushButtonContents, &option, this);

    // Words first, then a slightly smaller face; a path without blanks breaks where it must.
    const int flags = Qt::AlignCenter | Qt::TextShowMnemonic;
    QFont face = font();
    int wrap = Qt::TextWordWrap;
    while (!fitsIn(face, area, flags | wrap, caption) && face.pointSizeF() > 7.0)
        face.setPointSizeF(face.pointSizeF() - 0.5);
    if (!fitsIn(face, area, flags | wrap, caption)) {
        face = font();
        wrap = Qt::TextWrapAnywhere;
    }
    painter.setFont(face);
    if (face_.isValid())
        painter.setPen(isEnabled() ? QColor(Qt::black) : kDisabledCaption);
    else
        painter.setPen(palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled,
                                       QPalette::ButtonText));
    painter.drawText(area, flags | wrap, caption);
}

} // namespace nv
