#include "backup/FrmCopy.h"

#include "platform/FailureText.h"
#include "startup/AppSettings.h"

namespace nv {

Frm_Copy::Frm_Copy(const Controls& c)
    : Me(c.Me), Animation1(c.Animation1), Pbr(c.Pbr), Text1(c.Text1), Label1(c.Label1) {}

void Frm_Copy::Form_Load() {
    // The clip lies in the program's own folder, not in the production folder. A clip that
    // cannot be played has a number of its own, so that the box speaks of the clip and not of
    // the backup drive.
    if (!Animation1->open(AppPath() + "\\" + Animation1->clipFileName()))
        throw copyClipFailure(Animation1->clipFileName());
    Animation1->play();
}

void Frm_Copy::Unload() {
    Animation1->stop();
    Me->close();
}

} // namespace nv
