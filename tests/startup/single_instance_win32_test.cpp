#include "win32/Win32SingleInstance.h"

#include <gtest/gtest.h>
#include <memory>

using namespace nv;

// Windows opens a settings file under any case of its letters, so the name ignores case.
TEST(Win32SingleInstance, OneProgramPerSettingsFileInAnyCaseUntilItEnds) {
    auto first = std::make_unique<Win32SingleInstance>("C:\\Gegevens één\\NV.ini");
    EXPECT_TRUE(first->first());
    EXPECT_FALSE(Win32SingleInstance("c:\\GEGEVENS ÉÉN\\nv.INI").first());
    EXPECT_TRUE(Win32SingleInstance("C:\\Gegevens één\\Ander.ini").first());
    first.reset();
    EXPECT_TRUE(Win32SingleInstance("C:\\Gegevens één\\NV.ini").first());
}
