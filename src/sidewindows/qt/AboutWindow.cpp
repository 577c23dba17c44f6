#include "sidewindows/qt/AboutWindow.h"

#include "platform/qt/ControlNames.h"
#include "platform/qt/SansFont.h"

#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QStyle>
#include <QStyleOptionFocusRect>

namespace nv {

namespace {

// A flat line of one colour, as the separator draws it.
class Line : public QWidget {
public:
    Line(QWidget* parent, const QColor& colour) : QWidget(parent), colour_(colour) {}

protected:
    void paintEvent(QPaintEvent*) override { QPainter(this).fillRect(rect(), colour_); }

private:
    QColor colour_;
};

QLabel* label(QWidget* parent, const char* name, QRect where, bool black = false) {
    auto* made = named(new QLabel(parent), name, {});
    made->setGeometry(where);
    made->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    made->setWordWrap(true);
    if (black) {
        QPalette palette = made->palette();
        palette.setColor(QPalette::WindowText, Qt::black);
        made->setPalette(palette);
    }
    return made;
}

QLineEdit* infoText(QWidget* parent) {
    auto* text = named(new QLineEdit(parent), "TxtInfo", "Informatie");
    text->setGeometry(twipsRect(240, 3840, 5415, 525));
    text->setFrame(false);
    text->setReadOnly(true);
    QPalette face = text->palette();
    face.setColor(QPalette::Base, face.color(QPalette::Button));
    text->setPalette(face);
    return text;
}

MailLink* mailLink(QWidget* parent) {
    auto* link = new MailLink(parent);
    link->setObjectName("LblMail");
    link->setGeometry(twipsRect(240, 4440, 3975, 255));
    return link;
}

QPushButton* okButton(QWidget* parent) {
    auto* ok = named(new QPushButton("OK", parent), "cmdOK", {});
    ok->setGeometry(twipsRect(4320, 4440, 1260, 345));
    ok->setDefault(true);
    return ok;
}

} // namespace

MailLink::MailLink(QWidget* parent) : QAbstractButton(parent) {
    setCursor(Qt::PointingHandCursor);
    setFocusPolicy(Qt::TabFocus);
}

QSize MailLink::sizeHint() const {
    return fontMetrics().size(Qt::TextSingleLine, text());
}

void MailLink::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    // Underlined in the window's own face, whatever that is when the link is painted.
    QFont underlined = font();
    underlined.setUnderline(true);
    painter.setFont(underlined);
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(rect(), Qt::AlignLeft | Qt::AlignVCenter, text());
    if (hasFocus()) {
        QStyleOptionFocusRect focus;
        focus.initFrom(this);
        style()->drawPrimitive(QStyle::PE_FrameFocusRect, &focus, &painter, this);
    }
}

AboutWindow::AboutWindow()
    // Only these buttons, on every platform: without the customising hint some add their own.
    : QDialog(nullptr, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                           Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint |
                           Qt::MSWindowsFixedSizeDialogHint),
      me_(this), title_(label(this, "lblTitle", twipsRect(1770, 240, 3885, 480))),
      version_(label(this, "lblVersion", twipsRect(1770, 780, 3885, 225))),
      description_(label(this, "lblDescription", twipsRect(1770, 1125, 3885, 1890), true)),
      disclaimer_(label(this, "lblDisclaimer", twipsRect(240, 3360, 3870, 345), true)),
      info_(infoText(this)), mail_(mailLink(this)), ok_(okButton(this)),
      form_({&me_, &title_, &version_, &description_, &disclaimer_, &info_, &mail_, &ok_}) {
    setObjectName("frmAbout");
    setModal(true);
    setFont(sansFont(8.25));
    setFixedSize(twips(6090), twips(5040));
    move(twips(3120), twips(2970));
    title_.widget()->setFont(sansFont(12, true));

    auto* logo = named(new QLabel(this), "Image1", "Logo");
    logo->setPixmap(QPixmap(":/pictures/about-logo.png"));
    logo->setScaledContents(true);
    logo->setGeometry(twipsRect(0, 120, 1650, 1335));
    auto* shade = new Line(this, QColor(128, 128, 128));
    shade->setObjectName("Line1_1");
    shade->setGeometry(twips(120), twips(3120), twips(5684 - 120), 1);
    auto* light = new Line(this, Qt::white);
    light->setObjectName("Line1_0");
    light->setGeometry(twips(120), twips(3120) + 1, twips(5669 - 120), 2);
    // The window opens with OK ready, not with a caret in the text beside it.
    ok_.setFocus();
}

} // namespace nv
