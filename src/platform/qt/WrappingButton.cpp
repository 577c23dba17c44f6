#include "platform/qt/WrappingButton.h"

#include <QStyleOptionButton>
#include <QStylePainter>

namespace nv {

namespace {

bool fitsIn(const QFont& font, const QRect& area, int flags, const QString& caption) {
    QRect needed = QFontMetrics(font).boundingRect(area, flags, caption);
    return needed.height() <= area.height() && needed.width() <= area.width();
}

} // namespace

void WrappingButton::paintEvent(QPaintEvent*) {
    QStylePainter painter(this);
    QStyleOptionButton option;
    initStyleOption(&option);
    QString caption = option.text;
    option.text.clear();
    painter.drawControl(QStyle::CE_PushButton, option);
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
    painter.setPen(
        palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled, QPalette::ButtonText));
    painter.drawText(area, flags | wrap, caption);
}

} // namespace nv
