#include "startup/SingleStart.h"

#include "startup/MsgBox.h"

namespace nv {

const char* const kAlreadyOpenText =
    "Norvale Backup is al geopend.\r\n\r\nU kunt verder werken in het venster dat al openstaat.";

bool goOnAsOnlyStart(SingleStart& start) {
    if (start.first())
        return true;
    MsgBox(kAlreadyOpenText, Buttons::OK, Icon::Information);
    start.askFirstToComeForward();
    return false;
}

} // namespace nv
