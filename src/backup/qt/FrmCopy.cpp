#include "backup/qt/FrmCopy.h"

#include "platform/DriveFormConversion.h"
#include "platform/FailureText.h"
#include "platform/qt/ControlNames.h"
#include "platform/qt/SansFont.h"
#include "platform/qt/Twips.h"
#include "startup/AppSettings.h"

#include <QCloseEvent>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QMovie>
#include <QProgressBar>
#include <QScreen>

namespace nv {

namespace {

// The clip lies in the program's own folder, not in the production folder.
const char* const kCopyClipName = "FILECOPY.GIF";

} // namespace

FrmCopy::FrmCopy(QWidget* parent)
    : QWidget(parent, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint) {
    setObjectName("Frm_Copy");
    setWindowTitle("Kopieren");
    setAccessibleName(windowTitle());
    setFont(sansFont(8.25));
    setFixedSize(twips(4605), twips(3090));

    Animation1 = named(new QLabel(this), "Animation1", "Animatie van het kopi\u00ebren");
    Animation1->setGeometry(twipsRect(360, 960, 3975, 855));
    Animation1->setScaledContents(true);

    Pbr = named(new QProgressBar(this), "Pbr", "Voortgang");
    Pbr->setGeometry(twipsRect(120, 2640, 3735, 255));
    Pbr->setRange(0, 100);
    Pbr->setValue(0);
    Pbr->setTextVisible(false);

    Text1 = named(new QLineEdit("Text1", this), "Text1", "Bestand dat gekopieerd wordt");
    Text1->setGeometry(twipsRect(360, 2040, 2895, 495));
    Text1->setFrame(false);
    Text1->setReadOnly(true);
    Text1->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    QPalette face = Text1->palette();
    face.setColor(QPalette::Base, face.color(QPalette::Button));
    Text1->setPalette(face);

    Label1 =
        named(new QLabel("Bestanden worden gekopieerd. Even geduld a.u.b", this), "Label1", {});
    Label1->setGeometry(twipsRect(480, 480, 3615, 855));
    Label1->setWordWrap(true);
    Label1->setAlignment(Qt::AlignLeft | Qt::AlignTop);

    if (QScreen* screen = QGuiApplication::primaryScreen())
        move(screen->availableGeometry().center() - rect().center());
}

void FrmCopy::Form_Load() {
    const QString path = QString::fromStdString(nativeFormOf(AppPath() + "\\" + kCopyClipName));
    auto* clip = new QMovie(path, QByteArray(), this);
    // A file that starts like a clip but breaks off before its first picture is as unusable as
    // a missing one. Its number is its own, so that the box speaks of the clip and not of the
    // backup drive.
    if (!clip->isValid() || !clip->jumpToFrame(0) || clip->currentImage().isNull()) {
        delete clip;
        throw fileFailure(kFailCopyClip);
    }
    clip_ = clip;
    Animation1->setMovie(clip_);
    clip_->start();
}

void FrmCopy::Unload() {
    if (clip_)
        clip_->stop();
    unloading_ = true;
    close();
}

void FrmCopy::closeEvent(QCloseEvent* event) {
    if (unloading_)
        event->accept();
    else
        event->ignore();
}

} // namespace nv
