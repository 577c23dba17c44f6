#include "sidewindows/qt/SplashWindow.h"

#include "platform/qt/ControlNames.h"

#include <QGuiApplication>
#include <QLabel>
#include <QScreen>
#include <QTimer>

namespace nv {

namespace {

const QColor kBackground(224, 224, 224);

QFrame* innerFrame(QFrame* window) {
    auto* frame = named(new QFrame(window), "Frame1", "Startscherm");
    frame->setGeometry(twipsRect(240, 60, 7545, 5235));
    frame->setFrameStyle(QFrame::Box | QFrame::Plain);
    return frame;
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
    QFont arial("Arial");
    arial.setStyleHint(QFont::SansSerif);
    arial.setPointSizeF(points);
    arial.setBold(true);
    label->setFont(arial);
    QPalette palette = label->palette();
    palette.setColor(QPalette::WindowText, colour);
    label->setPalette(palette);
    label->setGeometry(where);
    return label;
}

QFrame* frameOf(const QtLabel& label) {
    return static_cast<QFrame*>(label.widget());
}

} // namespace

SplashWindow::SplashWindow()
    : QFrame(nullptr, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint), me_(this),
      frame_(innerFrame(this)),
      copyright_(caption(frameOf(frame_), "lblCopyright", QColor(0, 0, 255), 9.75,
                         twipsRect(180, 2610, 2835, 255))),
      productName_(caption(frameOf(frame_), "lblProductName", QColor(255, 0, 0), 26.25,
                           twipsRect(1980, 3675, 3735, 615))),
      version_(caption(frameOf(frame_), "lblVersion", QColor(0, 0, 0), 12,
                       twipsRect(3120, 4920, 885, 285))),
      timer_(new QTimer(this)),
      form_({&me_, &frame_, &copyright_, &productName_, &version_, &timer_}) {
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
    frame_.widget()->move(frame_.widget()->pos() + QPoint(frameWidth(), frameWidth()));

    // The pictures lie under the captions.
    QWidget* inside = frame_.widget();
    picture(inside, "Image1", "Beeldmerk", ":/pictures/splash-square.png",
            twipsRect(210, 3705, 1575, 1350))
        ->lower();
    picture(inside, "Image2", "Banner", ":/pictures/splash-banner.png",
            twipsRect(150, 225, 7230, 2250))
        ->lower();
    static_cast<QLabel*>(version_.widget())->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    // Both take the size of what the form writes in them.
    version_.setAutoSize(true);
    productName_.setAutoSize(true);

    if (QScreen* screen = QGuiApplication::primaryScreen())
        move(screen->availableGeometry().center() - rect().center());
}

void SplashWindow::showEvent(QShowEvent* event) {
    QFrame::showEvent(event);
    activateWindow();
    setFocus();
}

} // namespace nv
