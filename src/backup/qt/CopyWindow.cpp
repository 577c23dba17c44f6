#include "backup/qt/CopyWindow.h"

#include "platform/qt/ControlNames.h"
#include "platform/qt/SansFont.h"

#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QScreen>

namespace nv {

namespace {

QLabel* clipBox(QWidget* window) {
    auto* box = named(new QLabel(window), "Animation1", "Animatie van het kopi\u00ebren");
    box->setGeometry(twipsRect(360, 960, 3975, 855));
    box->setScaledContents(true);
    return box;
}

QProgressBar* progressBar(QWidget* window) {
    auto* bar = named(new QProgressBar(window), "Pbr", "Voortgang");
    bar->setGeometry(twipsRect(120, 2640, 3735, 255));
    bar->setRange(0, 100);
    bar->setValue(0);
    bar->setTextVisible(false);
    return bar;
}

QLineEdit* fileText(QWidget* window) {
    auto* text = named(new QLineEdit("Text1", window), "Text1", "Bestand dat gekopieerd wordt");
    text->setGeometry(twipsRect(360, 2040, 2895, 495));
    text->setFrame(false);
    text->setReadOnly(true);
    text->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    QPalette face = text->palette();
    face.setColor(QPalette::Base, face.color(QPalette::Button));
    text->setPalette(face);
    return text;
}

QLabel* waitText(QWidget* window) {
    auto* label =
        named(new QLabel("Bestanden worden gekopieerd. Even geduld a.u.b", window), "Label1", {});
    label->setGeometry(twipsRect(480, 480, 3615, 855));
    label->setWordWrap(true);
    label->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    return label;
}

} // namespace

CopyWindow::CopyWindow(QWidget* owner)
    : QWidget(owner, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint), me_(this),
      animation_(clipBox(this)), progress_(progressBar(this)), text_(fileText(this)),
      label_(waitText(this)), form_({&me_, &animation_, &progress_, &text_, &label_}) {
    setObjectName("Frm_Copy");
    setWindowTitle("Kopieren");
    setAccessibleName(windowTitle());
    setFont(sansFont(8.25));
    setFixedSize(twips(4605), twips(3090));
    me_.refuseCloseFromOutside();
    if (QScreen* screen = QGuiApplication::primaryScreen())
        move(screen->availableGeometry().center() - rect().center());
}

} // namespace nv
