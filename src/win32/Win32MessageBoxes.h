#pragma once

#include "platform/MessageBoxes.h"

namespace nv {

// The system's message box, modal over the window the user works in.
class Win32MessageBoxes : public MessageBoxes {
public:
    Answer show(const MessageBoxRequest& request) override;
};

} // namespace nv
