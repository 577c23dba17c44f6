#pragma once

#include <string>

namespace nv {

enum class Buttons { OK, OKCancel, YesNo, YesNoCancel, RetryCancel };
enum class Icon { None, Critical, Question, Exclamation, Information };
enum class DefaultButton { First, Second, Third };
enum class Answer { OK, Cancel, Yes, No, Retry };

struct MessageBoxRequest {
    std::string text;
    std::string title;
    Buttons buttons = Buttons::OK;
    Icon icon = Icon::None;
    DefaultButton defaultButton = DefaultButton::First;
};

// The answer of a box closed on its default button.
Answer defaultAnswer(Buttons buttons, DefaultButton which);

// Shows a modal box and returns the answer.
class MessageBoxes {
public:
    virtual ~MessageBoxes() = default;
    virtual Answer show(const MessageBoxRequest& request) = 0;
};

} // namespace nv
