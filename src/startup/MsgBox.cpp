#include "startup/MsgBox.h"

#include "platform/Platform.h"
#include "startup/AppSettings.h"

namespace nv {

namespace {
// Without a screen the box answers with its default button.
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
} // namespace

Answer MsgBox(const std::string& prompt, Buttons buttons, Icon icon, DefaultButton defaultButton,
              const std::string& title) {
    MessageBoxRequest request{prompt, title.empty() ? App.Title : title, buttons, icon,
                              defaultButton};
    if (!platform().boxes)
        return defaultAnswer(buttons, defaultButton);
    return platform().boxes->show(request);
}

} // namespace nv
