#pragma once

#include "backup/FrmCopy.h"
#include "mainwindow/FrmMain.h"
#include "platform/Controls.h"
#include "sidewindows/FrmAbout.h"
#include "sidewindows/FrmSplash.h"

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace nvtest {

// The fake control set: each control keeps what a user would see, without a screen. The
// helpers that act as the user (click, choose, tick...) do nothing on a control the user could
// not reach, hidden or disabled, and say so by returning false.

// Where the keyboard focus went last, shared by the controls of one window.
struct FocusHolder {
    const void* focused = nullptr;
};

template <typename Base> class FakeControl : public Base {
public:
    bool visible() const override { return visible_; }
    void setVisible(bool visible) override { visible_ = visible; }
    bool enabled() const override { return enabled_; }
    void setEnabled(bool enabled) override { enabled_ = enabled; }
    nv::TwipsRect place() const override { return place_; }
    void setPlace(const nv::TwipsRect& place) override { place_ = place; }
    void setFocus() override {
        if (focus)
            focus->focused = this;
    }

    bool reachable() const { return visible_ && enabled_; }
    bool hasFocus() const { return focus && focus->focused == this; }

    FocusHolder* focus = nullptr;

protected:
    bool visible_ = true;
    bool enabled_ = true;
    nv::TwipsRect place_;
};

class FakeLabel : public FakeControl<nv::Label> {
public:
    std::string caption() const override { return caption_; }
    void setCaption(const std::string& caption) override { caption_ = caption; }
    void setForeColor(nv::Rgb colour) override { foreColor = colour; }
    bool click();
    nv::Rgb foreColor;

private:
    std::string caption_;
};

class FakeTextBox : public FakeControl<nv::TextBox> {
public:
    std::string text() const override { return text_; }
    void setText(const std::string& text) override { text_ = text; }

private:
    std::string text_;
};

class FakeButton : public FakeControl<nv::Button> {
public:
    std::string caption() const override { return caption_; }
    void setCaption(const std::string& caption) override { caption_ = caption; }
    bool click();

private:
    std::string caption_;
};

class FakeListBox : public FakeControl<nv::ListBox> {
public:
    struct Row {
        std::string text;
        nv::RowIcon icon = nv::RowIcon::None;
        bool selected = false;
    };
    int count() const override { return static_cast<int>(rows.size()); }
    std::string list(int row) const override { return rows.at(row).text; }
    void addItem(const std::string& text, nv::RowIcon icon) override;
    void removeItem(int row) override;
    void clear() override;
    bool selected(int row) const override { return rows.at(row).selected; }
    void setSelected(int row, bool on) override { rows.at(row).selected = on; }
    int listIndex() const override { return current_; }
    void setListIndex(int row) override { current_ = row; }

    // The user clicks a row: it becomes the current and only selected row.
    bool clickRow(int row);
    bool doubleClick(int row);
    bool keyDown(int keyCode, int shift);
    int selectedCount() const;
    std::vector<std::string> texts() const;

    std::vector<Row> rows;

private:
    int current_ = -1;
};

class FakeComboBox : public FakeControl<nv::ComboBox> {
public:
    int count() const override { return static_cast<int>(rows.size()); }
    std::string list(int row) const override { return rows.at(row); }
    void addItem(const std::string& text) override { rows.push_back(text); }
    void clear() override;
    int listIndex() const override { return current_; }
    void setListIndex(int row) override { current_ = row; }

    // The user opens the list and picks the entry that begins with text.
    bool choose(const std::string& text);

    std::vector<std::string> rows;

private:
    int current_ = -1;
};

class FakeTimer : public nv::TimerControl {
public:
    int interval() const override { return interval_; }
    void setInterval(int milliseconds) override { interval_ = milliseconds; }
    bool enabled() const override { return enabled_; }
    void setEnabled(bool enabled) override { enabled_ = enabled; }
    // One tick, when the timer runs.
    bool tick();

private:
    int interval_ = 0;
    bool enabled_ = false;
};

class FakeMenuItem : public nv::MenuItem {
public:
    bool enabled() const override { return enabled_; }
    void setEnabled(bool enabled) override { enabled_ = enabled; }
    bool click();

private:
    bool enabled_ = true;
};

class FakeStatusBar : public nv::StatusBar {
public:
    std::string panelText(int panel) const override;
    void setPanelText(int panel, const std::string& text) override { panels[panel] = text; }
    std::map<int, std::string> panels;
};

class FakeProgressBar : public FakeControl<nv::ProgressBar> {
public:
    int max() const override { return max_; }
    void setMax(int maximum) override { max_ = maximum; }
    int value() const override { return value_; }
    void setValue(int value) override { value_ = value; }

private:
    int max_ = 100;
    int value_ = 0;
};

// Opens a clip that is a file with something in it.
class FakeAnimation : public FakeControl<nv::Animation> {
public:
    std::string clipFileName() const override { return "FILECOPY.AVI"; }
    bool open(const std::string& path) override;
    void play() override { playing = !opened.empty(); }
    void stop() override { playing = false; }
    std::string opened;
    bool playing = false;
};

class FakeShape : public FakeControl<nv::Shape> {
public:
    int kind() const override { return kind_; }
    void setKind(int kind) override { kind_ = kind; }
    // Every place the shape was painted at, in order.
    void repaint() override { painted.push_back(place_); }
    std::vector<nv::TwipsRect> painted;

private:
    int kind_ = kRectangle;
};

class FakeWindow : public FakeControl<nv::Window> {
public:
    FakeWindow() { visible_ = false; }
    std::string caption() const override { return caption_; }
    void setCaption(const std::string& caption) override { caption_ = caption; }
    // A size the logic sets raises Resize, as a real window's does.
    void setPlace(const nv::TwipsRect& place) override;
    int innerWidth() const override { return place_.width; }
    nv::WindowState state() const override { return state_; }
    void show() override { visible_ = true; }
    // Runs whileModal, as the user would act while the window stands, then returns.
    void showModal() override;
    void close() override;
    void repaint() override { ++repaints; }

    // The user drags the window to this height, or minimises or maximises it.
    void dragToHeight(int height);
    void setState(nv::WindowState state) { state_ = state; }

    std::function<void()> whileModal;
    bool closed = false;
    bool wasModal = false;
    int repaints = 0;

private:
    std::string caption_;
    nv::WindowState state_ = nv::WindowState::Normal;
};

// The panel docked at the main window's bottom edge, above the status bar: its Top follows the
// window's height.
class FakeDockedPanel : public FakeControl<nv::Control> {
public:
    explicit FakeDockedPanel(const FakeWindow& window) : window_(window) { visible_ = false; }
    nv::TwipsRect place() const override;

private:
    const FakeWindow& window_;
};

// Frm_Copy over fakes.
class FakeCopyWindow : public nv::FormFace<nv::Frm_Copy> {
public:
    FakeCopyWindow();
    nv::Frm_Copy& form() override { return form_; }

    FakeWindow Me;
    FakeAnimation Animation1;
    FakeProgressBar Pbr;
    FakeTextBox Text1;
    FakeLabel Label1;

private:
    nv::Frm_Copy form_;
};

// frmAbout over fakes.
class FakeAboutWindow : public nv::FormFace<nv::frmAbout> {
public:
    FakeAboutWindow();
    nv::frmAbout& form() override { return form_; }

    FocusHolder focus;
    FakeWindow Me;
    FakeLabel lblTitle, lblVersion, lblDescription, lblDisclaimer, LblMail;
    FakeTextBox TxtInfo;
    FakeButton cmdOK;

private:
    nv::frmAbout form_;
};

// frmSplash over fakes.
class FakeSplashWindow : public nv::FormFace<nv::frmSplash> {
public:
    FakeSplashWindow();
    nv::frmSplash& form() override { return form_; }

    FakeWindow Me;
    FakeLabel Frame1, lblCopyright, lblProductName, lblVersion;
    FakeTimer Timer1;

private:
    nv::frmSplash form_;
};

// FrmMain over fakes laid out as the window is drawn, and the windows it opens. The copy
// window that a backup shows is kept after it closes, so a test can see what it showed.
class FakeMainWindow : public nv::FrmMainFace {
public:
    FakeMainWindow();
    ~FakeMainWindow() override;
    FakeMainWindow(const FakeMainWindow&) = delete;
    FakeMainWindow& operator=(const FakeMainWindow&) = delete;

    // Makes the form; its drive list reads the drives now.
    nv::FrmMain& form();

    std::unique_ptr<nv::FormFace<nv::Frm_Copy>> loadCopyWindow() override;
    std::unique_ptr<nv::FormFace<nv::frmAbout>> loadAbout() override;
    void runWithoutInput(const std::function<void()>& work) override;
    void sendKeys(const std::string& keys) override { keysSent.push_back(keys); }

    // Whether each backup control is on, in the order subButtons sets them: "11110111".
    std::string buttonState() const;

    FocusHolder focus;
    FakeWindow Me;
    FakeTextBox TxtLastBackup;
    FakeLabel Label1;
    FakeListBox LstSelectedFiles;
    FakeShape Shape1;
    FakeButton Cmd_Backup, CmdSelectFiles, CmdVerwijder;
    FakeLabel fraDirectory;
    FakeComboBox TargetDrive;
    FakeListBox TargetDirectories, TargetFileLst;
    FakeLabel LblStation, Lbl_InhoudDir;
    FakeButton CmdDeleteDir, CmdVervers, CmdRestore;
    FakeDockedPanel PicRestore{Me};
    FakeLabel LblRestore[2];
    FakeButton CmdWizRestore[3];
    FakeStatusBar StatusBar;
    FakeTimer Timer1;
    FakeMenuItem MoVoegToe, MoVerwijder, MoAfsluiten, moBackUp, moRestore, MoHelp, MoAbout;

    // The copy windows of the backups so far; their controls outlive the form.
    std::vector<std::unique_ptr<FakeCopyWindow>> copyWindows;
    // Runs inside each About window while it stands.
    std::function<void(FakeAboutWindow&)> whileAbout;
    int aboutShown = 0;
    std::vector<std::string> keysSent;
    // Runs each time a copy runs off the window's thread, before the copy.
    std::function<void()> beforeCopy;

private:
    std::unique_ptr<nv::FrmMain> form_;
};

} // namespace nvtest
