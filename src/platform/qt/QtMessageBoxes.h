#pragma once

#include "platform/MessageBoxes.h"

namespace nv {

// Message boxes as Qt dialogs; the only place that makes a QMessageBox.
class QtMessageBoxes : public MessageBoxes {
public:
    Answer show(const MessageBoxRequest& request) override;
};

} // namespace nv
