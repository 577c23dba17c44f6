#include "win32/Win32MessageBoxes.h"

#include "platform/win32/Win32Text.h"

#include <windows.h>

namespace nv {

namespace {

UINT buttonsStyle(Buttons buttons) {
    switch (buttons) {
    case Buttons::OK:
        return MB_OK;
    case Buttons::OKCancel:
        return MB_OKCANCEL;
    case Buttons::YesNo:
        return MB_YESNO;
    case Buttons::YesNoCancel:
        return MB_YESNOCANCEL;
    case Buttons::RetryCancel:
        return MB_RETRYCANCEL;
    }
    return MB_OK;
}

UINT iconStyle(Icon icon) {
    switch (icon) {
    case Icon::Critical:
        return MB_ICONERROR;
    case Icon::Question:
        return MB_ICONQUESTION;
    case Icon::Exclamation:
        return MB_ICONWARNING;
    case Icon::Information:
        return MB_ICONINFORMATION;
    case Icon::None:
        break;
    }
    return 0;
}

UINT defaultStyle(DefaultButton which) {
    switch (which) {
    case DefaultButton::First:
        return MB_DEFBUTTON1;
    case DefaultButton::Second:
        return MB_DEFBUTTON2;
    case DefaultButton::Third:
        return MB_DEFBUTTON3;
    }
    return MB_DEFBUTTON1;
}

} // namespace

Answer Win32MessageBoxes::show(const MessageBoxRequest& request) {
    UINT style = buttonsStyle(request.buttons) | iconStyle(request.icon) |
                 defaultStyle(request.defaultButton);
    HWND owner = GetActiveWindow();
    // Without a window of its own in front, the box still holds back every window of the program.
    if (!owner)
        style |= MB_TASKMODAL;
    const std::wstring text = win32::wideFromUtf8(request.text);
    const std::wstring title = win32::wideFromUtf8(request.title);
    switch (MessageBoxW(owner, text.c_str(), title.c_str(), style)) {
    case IDOK:
        return Answer::OK;
    case IDCANCEL:
        return Answer::Cancel;
    case IDYES:
        return Answer::Yes;
    case IDNO:
        return Answer::No;
    case IDRETRY:
        return Answer::Retry;
    default:
        break;
    }
    // No box could be made: the last button's answer (Cancel or No), which changes nothing.
    return defaultAnswer(request.buttons, DefaultButton::Third);
}

} // namespace nv
