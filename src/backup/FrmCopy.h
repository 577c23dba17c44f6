#pragma once

#include "platform/Controls.h"

namespace nv {

// Frm_Copy: stands on the screen while a backup copies. It offers the user nothing to do: no
// button and no close box; only Unload closes it.
class Frm_Copy {
public:
    struct Controls {
        Window* Me;
        Animation* Animation1;
        ProgressBar* Pbr;
        TextBox* Text1;
        Label* Label1;
    };

    explicit Frm_Copy(const Controls& controls);

    // Opens the clip beside the program and plays it. Throws FileFailure kFailCopyClip when the
    // clip is missing or cannot be played.
    void Form_Load();
    // Stops the clip and closes the window.
    void Unload();

    Window* Me;
    Animation* Animation1;
    ProgressBar* Pbr;
    TextBox* Text1;
    Label* Label1;
};

} // namespace nv
