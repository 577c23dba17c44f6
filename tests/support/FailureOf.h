#pragma once

#include "platform/FileFailure.h"

#include <cstdint>
#include <functional>
#include <gtest/gtest.h>

namespace nvtest {

// The number of the file failure an operation throws, 0 when it throws none; a failure always
// carries a description for its box.
inline int32_t failureOf(const std::function<void()>& operation) {
    try {
        operation();
    } catch (const nv::FileFailure& failure) {
        EXPECT_FALSE(failure.Description.empty()) << failure.Number;
        return failure.Number;
    }
    return 0;
}

} // namespace nvtest
