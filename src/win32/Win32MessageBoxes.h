#pragma once

#include "platform/MessageBoxes.h"
#include "platform/win32/Win32Text.h"

#include <iterator>
#include <windows.h>

namespace nv {

// The system's message box, modal over the window the user works in.
class Win32MessageBoxes : public MessageBoxes {
public:
    Answer show(const MessageBoxRequest& request) override {
        // By the enums' order: Buttons, Icon, and the answers each button gives.
        constexpr UINT kButtons[] = {MB_OK, MB_OKCANCEL, MB_YESNO, MB_YESNOCANCEL, MB_RETRYCANCEL};
        constexpr UINT kIcons[] = {0, MB_ICONERROR, MB_ICONQUESTION, MB_ICONWARNING,
                                   MB_ICONINFORMATION};
        constexpr int kAnswers[] = {IDOK, IDCANCEL, IDYES, IDNO, IDRETRY};
        UINT style = kButtons[static_cast<int>(request.buttons)] |
                     kIcons[static_cast<int>(request.icon)] |
                     static_cast<UINT>(request.defaultButton) * MB_DEFBUTTON2;
        HWND owner = GetActiveWindow();
        // Without a window of its own in front, the box still holds back every window of the
        // program.
        if (!owner)
            style |= MB_TASKMODAL;
        const int pressed = MessageBoxW(owner, win32::wideFromUtf8(request.text).c_str(),
                                        win32::wideFromUtf8(request.title).c_str(), style);
        for (std::size_t i = 0; i < std::size(kAnswers); ++i)
            if (kAnswers[i] == pressed)
                return static_cast<Answer>(i);
        // No box could be made: the last button's answer (Cancel or No), which changes nothing.
        return defaultAnswer(request.buttons, DefaultButton::Third);
    }
};

} // namespace nv
