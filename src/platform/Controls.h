#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace nv {

// The window services: the standard controls as the forms see them. A face (Qt, Win32, or the
// tests' fake set) implements them over its own widgets; places and sizes are in twips, 1440 to
// the inch. A face raises an event only for what the user did: setting a value from the logic
// raises nothing, so each form decides itself when its own change handlers run.

struct TwipsRect {
    int left = 0, top = 0, width = 0, height = 0;
    bool operator==(const TwipsRect&) const = default;
};

// Red, green and blue, 0 to 255 each.
struct Rgb {
    uint8_t red = 0, green = 0, blue = 0;
    bool operator==(const Rgb&) const = default;
};

// Key codes and shift states of KeyDown, as the home platform numbers them.
constexpr int kKeyReturn = 13;
constexpr int kKeyA = 65;
constexpr int kKeyF1 = 112;
constexpr int kShiftMask = 1, kCtrlMask = 2, kAltMask = 4;

class Control {
public:
    virtual ~Control() = default;
    virtual bool visible() const = 0;
    virtual void setVisible(bool visible) = 0;
    virtual bool enabled() const = 0;
    virtual void setEnabled(bool enabled) = 0;
    // Relative to the parent's client area; a window's is on the screen.
    virtual TwipsRect place() const = 0;
    virtual void setPlace(const TwipsRect& place) = 0;
    virtual void setFocus() = 0;

    void setTop(int top) {
        TwipsRect p = place();
        p.top = top;
        setPlace(p);
    }
    void setHeight(int height) {
        TwipsRect p = place();
        p.height = height;
        setPlace(p);
    }
};

// A label or a frame: a caption the user cannot edit.
class Label : public Control {
public:
    virtual std::string caption() const = 0;
    virtual void setCaption(const std::string& caption) = 0;
    virtual void setForeColor(Rgb colour) = 0;
    std::function<void()> Click;
};

class TextBox : public Control {
public:
    virtual std::string text() const = 0;
    virtual void setText(const std::string& text) = 0;
};

class Button : public Control {
public:
    virtual std::string caption() const = 0;
    virtual void setCaption(const std::string& caption) = 0;
    std::function<void()> Click;
};

// What a list row shows in front of its text.
enum class RowIcon { None, OpenFolder, ClosedFolder };

// A list of rows, counted from 0; also the folder and file lists, whose rows the logic fills.
class ListBox : public Control {
public:
    virtual int count() const = 0;
    virtual std::string list(int row) const = 0;
    virtual void addItem(const std::string& text, RowIcon icon = RowIcon::None) = 0;
    virtual void removeItem(int row) = 0;
    virtual void clear() = 0;
    virtual bool selected(int row) const = 0;
    virtual void setSelected(int row, bool selected) = 0;
    // The current row, -1 when there is none.
    virtual int listIndex() const = 0;
    virtual void setListIndex(int row) = 0;

    // The text of the current row, "" when there is none.
    std::string text() const {
        int row = listIndex();
        return row >= 0 && row < count() ? list(row) : std::string();
    }

    std::function<void(int row)> DblClick;
    std::function<void(int keyCode, int shift)> KeyDown;
};

// A drop-down list: the drive list.
class ComboBox : public Control {
public:
    virtual int count() const = 0;
    virtual std::string list(int row) const = 0;
    virtual void addItem(const std::string& text) = 0;
    virtual void clear() = 0;
    virtual int listIndex() const = 0;
    virtual void setListIndex(int row) = 0;

    // The user is about to open the list.
    std::function<void()> DropDown;
    // The user chose another entry.
    std::function<void()> Click;
};

class TimerControl {
public:
    virtual ~TimerControl() = default;
    virtual int interval() const = 0;
    virtual void setInterval(int milliseconds) = 0;
    virtual bool enabled() const = 0;
    virtual void setEnabled(bool enabled) = 0;
    std::function<void()> Timer;
};

class MenuItem {
public:
    virtual ~MenuItem() = default;
    virtual bool enabled() const = 0;
    virtual void setEnabled(bool enabled) = 0;
    std::function<void()> Click;
};

// Panels numbered from 1. The clock and date panels keep themselves up to date.
class StatusBar {
public:
    virtual ~StatusBar() = default;
    virtual std::string panelText(int panel) const = 0;
    virtual void setPanelText(int panel, const std::string& text) = 0;
};

class ProgressBar : public Control {
public:
    virtual int max() const = 0;
    virtual void setMax(int maximum) = 0;
    virtual int value() const = 0;
    virtual void setValue(int value) = 0;
};

// Plays a clip by itself, also while the window's thread is busy.
class Animation : public Control {
public:
    // The file name of the clip this face plays ("FILECOPY.AVI", or another form of it).
    virtual std::string clipFileName() const = 0;
    // Opens the clip at a drive-form path; false when it is missing or cannot be played.
    virtual bool open(const std::string& path) = 0;
    virtual void play() = 0;
    virtual void stop() = 0;
};

// A red outline painted under the controls; kind 0 is a rectangle, 3 a circle.
class Shape : public Control {
public:
    static constexpr int kRectangle = 0;
    static constexpr int kCircle = 3;
    virtual int kind() const = 0;
    virtual void setKind(int kind) = 0;
    // Puts the shape on the screen now, before the caller goes on.
    virtual void repaint() = 0;
};

enum class WindowState { Normal, Minimized, Maximized };

// A window itself; its place is on the screen, its height the one the user drags.
class Window : public Control {
public:
    virtual std::string caption() const = 0;
    virtual void setCaption(const std::string& caption) = 0;
    // The width of the client area.
    virtual int innerWidth() const = 0;
    virtual WindowState state() const = 0;
    // Shows the window without modality; the call returns at once.
    virtual void show() = 0;
    // Shows the window modal and returns when it has closed.
    virtual void showModal() = 0;
    // Closes the window; the face unloads it.
    virtual void close() = 0;
    // Paints the window now, before the caller goes on.
    virtual void repaint() = 0;

    std::function<void()> Resize;
    // A key that gives a character went down.
    std::function<void()> KeyPress;
};

// A window a face made for one form: it keeps the widgets and the form alive together.
template <typename Form> class FormFace {
public:
    virtual ~FormFace() = default;
    virtual Form& form() = 0;
};

} // namespace nv
