#pragma once

#include "platform/MessageBoxes.h"

#include <gtest/gtest.h>
#include <string>

namespace nvtest {

// A box as the user met it: its title, text, buttons, icon and default button.
inline void expectBox(const nv::MessageBoxRequest& box, const std::string& title,
                      const std::string& text, nv::Buttons buttons, nv::Icon icon,
                      nv::DefaultButton defaultButton = nv::DefaultButton::First) {
    EXPECT_EQ(box.title, title);
    EXPECT_EQ(box.text, text);
    EXPECT_EQ(box.buttons, buttons);
    EXPECT_EQ(box.icon, icon);
    EXPECT_EQ(box.defaultButton, defaultButton);
}

} // namespace nvtest
