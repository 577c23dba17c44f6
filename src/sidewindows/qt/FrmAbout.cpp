#include "sidewindows/qt/FrmAbout.h"

#include "platform/qt/ControlNames.h"
#include "platform/qt/SansFont.h"
#include "platform/qt/Twips.h"
#include "sidewindows/OpenUrl.h"
#include "sidewindows/qt/FrmSplash.h"
#include "startup/AppSettings.h"

#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QStyle>
#include <QStyleOptionFocusRect>

namespace nv {

const char* const kSupportAddress = "support@tessaly.example";

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

void colourText(QWidget* widget, const QColor& colour) {
    QPalette palette = widget->palette();
    palette.setColor(QPalette::WindowText, colour);
    widget->setPalette(palette);
}

QLabel* label(QWidget* parent, const char* name, QRect where) {
    auto* made = named(new QLabel(parent), name, {});
    made->setGeometry(where);
    made->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    made->setWordWrap(true);
    return made;
}

const QColor kDarkBlue(0, 0, 192);
const QColor kDarkRed(192, 0, 0);

} // namespace

FrmAbout::FrmAbout(QWidget* parent)
    // Only these buttons, on every platform: without the customising hint some add their own.
    : QDialog(parent, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                          Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint |
                          Qt::MSWindowsFixedSizeDialogHint) {
    setObjectName("frmAbout");
    setModal(true);
    setFont(sansFont(8.25));
    setFixedSize(twips(6090), twips(5040));
    move(twips(3120), twips(2970));

    Image1 = named(new QLabel(this), "Image1", "Logo");
    Image1->setPixmap(QPixmap(":/pictures/about-logo.png"));
    Image1->setScaledContents(true);
    Image1->setGeometry(twipsRect(0, 120, 1650, 1335));
    lblTitle = label(this, "lblTitle", twipsRect(1770, 240, 3885, 480));
    lblTitle->setFont(sansFont(12, true));
    lblVersion = label(this, "lblVersion", twipsRect(1770, 780, 3885, 225));
    lblDescription = label(this, "lblDescription", twipsRect(1770, 1125, 3885, 1890));
    colourText(lblDescription, Qt::black);
    Line1_1 = new Line(this, QColor(128, 128, 128));
    Line1_1->setObjectName("Line1_1");
    Line1_1->setGeometry(twips(120), twips(3120), twips(5684 - 120), 1);
    Line1_0 = new Line(this, Qt::white);
    Line1_0->setObjectName("Line1_0");
    Line1_0->setGeometry(twips(120), twips(3120) + 1, twips(5669 - 120), 2);
    lblDisclaimer = label(this, "lblDisclaimer", twipsRect(240, 3360, 3870, 345));
    colourText(lblDisclaimer, Qt::black);

    TxtInfo = named(new QLineEdit(this), "TxtInfo", "Informatie");
    TxtInfo->setGeometry(twipsRect(240, 3840, 5415, 525));
    TxtInfo->setFrame(false);
    TxtInfo->setReadOnly(true);
    QPalette face = TxtInfo->palette();
    face.setColor(QPalette::Base, face.color(QPalette::Button));
    TxtInfo->setPalette(face);

    LblMail = named(new MailLink(this), "LblMail", kSupportAddress);
    LblMail->setGeometry(twipsRect(240, 4440, 3975, 255));
    LblMail->setText(kSupportAddress);
    connect(LblMail, &QAbstractButton::clicked, this, &FrmAbout::LblMail_Click);

    cmdOK = named(new QPushButton("OK", this), "cmdOK", {});
    cmdOK->setGeometry(twipsRect(4320, 4440, 1260, 345));
    cmdOK->setDefault(true);
    // The window opens with OK ready, not with a caret in the text beside it.
    cmdOK->setFocus();
    connect(cmdOK, &QPushButton::clicked, this, &FrmAbout::cmdOK_Click);
}

MailLink::MailLink(QWidget* parent) : QAbstractButton(parent), colour_(kDarkBlue) {
    setCursor(Qt::PointingHandCursor);
    setFocusPolicy(Qt::TabFocus);
    QFont underlined = font();
    underlined.setUnderline(true);
    setFont(underlined);
}

void MailLink::setColour(const QColor& colour) {
    colour_ = colour;
    update();
}

QSize MailLink::sizeHint() const {
    return fontMetrics().size(Qt::TextSingleLine, text());
}

void MailLink::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setPen(colour_);
    painter.drawText(rect(), Qt::AlignLeft | Qt::AlignVCenter, text());
    if (hasFocus()) {
        QStyleOptionFocusRect focus;
        focus.initFrom(this);
        style()->drawPrimitive(QStyle::PE_FrameFocusRect, &focus, &painter, this);
    }
}

void FrmAbout::Form_Load() {
    setWindowTitle("Tessaly Backup Tool");
    setAccessibleName(windowTitle());
    lblVersion->setText(QString::fromStdString(fVersionText("Versie ")));
    lblTitle->setText("Norvale Backup Tool");
    lblDescription->setText(
        "Eenvoudig progamma om de Norvale bestanden systematisch te kopieren naar een back-up "
        "medium zoals een ZIP drive\r\n\r\nToevoegen van andere belangrijke files is mogelijk, let "
        "wel op de maximale capaciteit van het backup medium, het programma regelt geen backup "
        "over meerdere diskettes");
    TxtInfo->setText("Voor vragen, mail naar:");
    lblDisclaimer->setText(QString::fromUtf8(kCopyrightLine));
}

void FrmAbout::cmdOK_Click() {
    close();
}

void FrmAbout::LblMail_Click() {
    LblMail->setColour(kDarkRed);
    subOpenUrl(std::string("mailto:") + kSupportAddress);
}

} // namespace nv
