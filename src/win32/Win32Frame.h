#pragma once

#include "win32/Win32Control.h"

namespace nv::win32 {

// A panel that holds controls, of the face's own class: a group frame draws its caption in its
// edge, a box its caption inside a black line, a plain panel nothing. A click on it is Click.
class Win32Frame : public Win32Control<Label> {
public:
    enum class Look { Group, Box, Plain };

    Win32Frame(HWND parent, const std::string& caption, const TwipsRect& place, Look look,
               HFONT font, std::optional<Rgb> backdrop = {})
        : Win32Control(makePanel(parent, caption, place, font)), look_(look), font_(font),
          backdrop_(backdropOf(backdrop)) {}
    std::string caption() const override { return windowText(window_); }
    void setCaption(const std::string& caption) override {
        setWindowText(window_, caption);
        InvalidateRect(window_, nullptr, TRUE);
    }
    void setForeColor(Rgb colour) override {
        fore_ = colorOf(colour);
        InvalidateRect(window_, nullptr, TRUE);
    }
    bool handle(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) override {
        if (routeForChildren(window_, message, wParam, lParam, backdrop_, result))
            return true;
        switch (message) {
        case WM_PAINT:
            paint();
            return true;
        case WM_SETFONT:
            font_ = reinterpret_cast<HFONT>(wParam);
            return true;
        case WM_GETFONT:
            result = reinterpret_cast<LRESULT>(font_);
            return true;
        case WM_LBUTTONDOWN:
            if (Click)
                Click();
            return true;
        default:
            return false;
        }
    }

private:
    static HWND makePanel(HWND parent, const std::string& caption, const TwipsRect& place,
                          HFONT font) {
        registerClass(L"NorvaleBackupPanel");
        return createChild(parent, L"NorvaleBackupPanel", caption, WS_CLIPCHILDREN, place, font,
                           WS_EX_CONTROLPARENT);
    }
    void paint() {
        PAINTSTRUCT ps;
        HDC dc = BeginPaint(window_, &ps);
        RECT area;
        GetClientRect(window_, &area);
        HGDIOBJ old = SelectObject(dc, font_);
        SetTextColor(dc, fore_);
        SetBkColor(dc, backdrop_);
        const std::wstring text = wideFromUtf8(caption());
        if (look_ == Look::Group) {
            TEXTMETRICW metrics;
            GetTextMetricsW(dc, &metrics);
            RECT edge = area;
            edge.top += metrics.tmHeight / 2;
            DrawEdge(dc, &edge, EDGE_ETCHED, BF_RECT);
            if (!text.empty()) {
                const std::wstring title = L" " + text + L" ";
                TextOutW(dc, pixelsOf(90), 0, title.c_str(), static_cast<int>(title.size()));
            }
        } else if (look_ == Look::Box) {
            FrameRect(dc, &area, static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH)));
            InflateRect(&area, -pixelsOf(45) - 1, -pixelsOf(45) - 1);
            SetBkMode(dc, TRANSPARENT);
            DrawTextW(dc, text.c_str(), -1, &area, DT_WORDBREAK | DT_NOPREFIX);
        }
        SelectObject(dc, old);
        EndPaint(window_, &ps);
    }

    Look look_;
    HFONT font_;
    COLORREF fore_ = GetSysColor(COLOR_WINDOWTEXT);
    COLORREF backdrop_;
};

} // namespace nv::win32
