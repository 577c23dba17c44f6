#include "startup/MsgBox.h"

#include "platform/Platform.h"
#include "startup/AppSettings.h"

#include <exception>

namespace nv {

Answer MsgBox(const std::string& prompt, Buttons buttons, Icon icon, DefaultButton defaultButton,
              const std::string& title) {
    MessageBoxRequest request{prompt, title.empty() ? App.Title : title, buttons, icon,
                              defaultButton};
    // Without a screen the box answers with its default button.
    if (!platform().boxes)
        return defaultAnswer(buttons, defaultButton);
    return platform().boxes->show(request);
}

void tellUncaughtFailure() {
    std::string what = "Onverwachte fout";
    try {
        throw;
    } catch (const std::exception& failure) {
        what += std::string(": ") + failure.what();
    } catch (...) {
    }
    MsgBox(what, Buttons::OK, Icon::Critical);
}

} // namespace nv
