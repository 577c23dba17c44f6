#include "sidewindows/qt/FrmSplash.h"

#include "platform/Platform.h"
#include "platform/qt/ControlNames.h"
#include "platform/qt/Twips.h"
#include "startup/AppSettings.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QScreen>
#include <QTimer>

namespace nv {

const char* const kCopyrightLine = "Tessaly \u00a9 2004-2026";

namespace {

const QColor kBackground(224, 224, 224);

QFont arial(double points) {
    QFont font("Arial");
    font.setStyleHint(QFont::SansSerif);
    font.setPointSizeF(points);
    font.setBold(true);
    return font;
}

QLabel* picture(QWidget* parent, const char* name, const QString& description, const char* file,
                QRect where) {
    auto* label = named(new QLabel(parent), name, description);
    label->setPixmap(QPixmap(file));
    label->setScaledContents(true);
    label->setGeometry(where);
    return label;
}

QLabel* caption(QWidget* parent, const char* name, const QColor& colour, double points,
                QRect where) {
    auto* label = named(new QLabel(parent), name, {});
    label->setFont(arial(points));
    QPalette palette = label->palette();
    palette.setColor(QPalette::WindowText, colour);
    label->setPalette(palette);
    label->setGeometry(where);
    return label;
}

} // namespace

FrmSplash::FrmSplash(QWidget* parent)
    : QFrame(parent, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint) {
    setObjectName("frmSplash");
    setAccessibleName("Norvale Backup");
    setAttribute(Qt::WA_DeleteOnClose);
    setFrameStyle(QFrame::Panel | QFrame::Raised);
    setLineWidth(2);
    setFocusPolicy(Qt::StrongFocus);
    QPalette palette = this->palette();
    palette.setColor(QPalette::Window, kBackground);
    setPalette(palette);
    setAutoFillBackground(true);
    setFixedSize(twips(7950) + 2 * frameWidth(), twips(5490) + 2 * frameWidth());

    Frame1 = named(new QFrame(this), "Frame1", "Startscherm");
    Frame1->setGeometry(twipsRect(240, 60, 7545, 5235).translated(frameWidth(), frameWidth()));
    Frame1->setFrameStyle(QFrame::Box | QFrame::Plain);
    Frame1->installEventFilter(this);

    Image2 = picture(Frame1, "Image2", "Banner", ":/pictures/splash-banner.png",
                     twipsRect(150, 225, 7230, 2250));
    Image1 = picture(Frame1, "Image1", "Beeldmerk", ":/pictures/splash-square.png",
                     twipsRect(210, 3705, 1575, 1350));
    lblCopyright =
        caption(Frame1, "lblCopyright", QColor(0, 0, 255), 9.75, twipsRect(180, 2610, 2835, 255));
    lblProductName = caption(Frame1, "lblProductName", QColor(255, 0, 0), 26.25,
                             twipsRect(1980, 3675, 3735, 615));
    lblVersion =
        caption(Frame1, "lblVersion", QColor(0, 0, 0), 12, twipsRect(3120, 4920, 885, 285));
    lblVersion->setAlignment(Qt::AlignRight | Qt::AlignVCenter);

    Timer1 = new QTimer(this);
    Timer1->setObjectName("Timer1");
    Timer1->setInterval(500);
    connect(Timer1, &QTimer::timeout, this, &FrmSplash::Timer1_Timer);
    Timer1->start();

    if (QScreen* screen = QGuiApplication::primaryScreen())
        move(screen->availableGeometry().center() - rect().center());
}

void FrmSplash::Form_Load() {
    lblVersion->setText(QString::fromStdString(fVersionText("Version ")));
    lblVersion->adjustSize();
    lblProductName->setText(QString::fromStdString(App.Title));
    lblProductName->adjustSize();
    lblCopyright->setText(QString::fromUtf8(kCopyrightLine));
    closingTime_ = platform().clock->now() + 2000;
}

void FrmSplash::Form_KeyPress() {
    close();
}

void FrmSplash::Frame1_Click() {
    close();
}

void FrmSplash::Timer1_Timer() {
    if (platform().clock->now() > closingTime_)
        close();
}

void FrmSplash::keyPressEvent(QKeyEvent* event) {
    // Only a key that gives a character counts; arrows and function keys give none.
    if (!event->text().isEmpty()) {
        Form_KeyPress();
        return;
    }
    QFrame::keyPressEvent(event);
}

void FrmSplash::showEvent(QShowEvent* event) {
    QFrame::showEvent(event);
    activateWindow();
    setFocus();
}

bool FrmSplash::eventFilter(QObject* watched, QEvent* event) {
    // A press that a picture or a label passes on is not a click on the frame's own surface.
    if (watched == Frame1 && event->type() == QEvent::MouseButtonPress) {
        auto* press = static_cast<QMouseEvent*>(event);
        if (!Frame1->childAt(press->position().toPoint())) {
            Frame1_Click();
            return true;
        }
    }
    return QFrame::eventFilter(watched, event);
}

} // namespace nv
