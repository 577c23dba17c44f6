#pragma once

#include <functional>

namespace nv {

// Runs work on a worker thread. Meanwhile this thread goes on serving events, so clips move and
// windows repaint, but no user input: a click or a key made meanwhile is dropped, not served
// later. What work throws is thrown here.
void runWithoutUserInput(const std::function<void()>& work);

} // namespace nv
