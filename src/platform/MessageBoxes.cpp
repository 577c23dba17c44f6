#include "platform/MessageBoxes.h"

namespace nv {

Answer defaultAnswer(Buttons buttons, DefaultButton which) {
    int index = static_cast<int>(which);
    switch (buttons) {
    case Buttons::OK:
        return Answer::OK;
    case Buttons::OKCancel:
        return index == 0 ? Answer::OK : Answer::Cancel;
    case Buttons::YesNo:
        return index == 0 ? Answer::Yes : Answer::No;
    case Buttons::YesNoCancel:
        return index == 0 ? Answer::Yes : index == 1 ? Answer::No : Answer::Cancel;
    case Buttons::RetryCancel:
        return index == 0 ? Answer::Retry : Answer::Cancel;
    }
    return Answer::OK;
}

} // namespace nv
