#pragma once

#include "platform/win32/Win32Text.h"

#include <windows.h>

#include <oleacc.h>
#include <string>

namespace nv::win32 {

// The name a screen reader speaks for a control that has no label just before it. The ids are
// spelled out: MinGW's oleacc import library does not carry them all.
inline void setAccessibleName(HWND control, const std::string& name) {
    constexpr CLSID kAccPropServices = {
        0xb5f8350b, 0x0548, 0x48b1, {0xa6, 0xee, 0x88, 0xbd, 0x00, 0xb4, 0xa5, 0xe7}};
    constexpr IID kIAccPropServices = {
        0x6e26e776, 0x04f0, 0x495d, {0x80, 0xe4, 0x33, 0x30, 0x35, 0x2e, 0x31, 0x69}};
    constexpr MSAAPROPID kAccName = {
        0x608d3df8, 0x8128, 0x4aa7, {0xa4, 0x28, 0xf5, 0x5e, 0x49, 0x26, 0x72, 0x91}};
    IAccPropServices* services = nullptr;
    if (FAILED(CoCreateInstance(kAccPropServices, nullptr, CLSCTX_INPROC_SERVER, kIAccPropServices,
                                reinterpret_cast<void**>(&services))))
        return;
    services->SetHwndPropStr(control, static_cast<DWORD>(OBJID_CLIENT), CHILDID_SELF, kAccName,
                             wideFromUtf8(name).c_str());
    services->Release();
}

} // namespace nv::win32
