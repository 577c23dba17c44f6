#pragma once

#include "backup/FrmCopy.h"
#include "mainwindow/FrmMain.h"
#include "platform/Controls.h"
#include "sidewindows/FrmAbout.h"
#include "sidewindows/FrmSplash.h"

#include <algorithm>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace nvtest {

// The fake control set keeps what a user would see, without a screen. The helpers that act as
// the user (click, choose, tick...) return false, doing nothing, on a hidden or disabled control.

template <typename Base> struct FakeControl : Base {
    bool visible() const override { return visible_; }
    void setVisible(bool visible) override { visible_ = visible; }
    bool enabled() const override { return enabled_; }
    void setEnabled(bool enabled) override { enabled_ = enabled; }
    nv::TwipsRect place() const override { return place_; }
    void setPlace(const nv::TwipsRect& place) override { place_ = place; }
    void setFocus() override {}

    bool reachable() const { return visible_ && enabled_; }
    template <typename Event, typename... Args> bool raise(const Event& event, Args... args) {
        return reachable() && event && (event(args...), true);
    }

    bool visible_ = true;
    bool enabled_ = true;
    nv::TwipsRect place_;
};

template <typename Base> struct FakeCaptioned : FakeControl<Base> {
    std::string caption() const override { return caption_; }
    void setCaption(const std::string& caption) override { caption_ = caption; }
    bool click() { return this->raise(this->Click); }
    std::string caption_;
};

using FakeButton = FakeCaptioned<nv::Button>;

struct FakeLabel : FakeCaptioned<nv::Label> {
    void setForeColor(nv::Rgb colour) override { foreColor = colour; }
    nv::Rgb foreColor;
};

struct FakeTextBox : FakeControl<nv::TextBox> {
    std::string text() const override { return text_; }
    void setText(const std::string& text) override { text_ = text; }
    std::string text_;
};

// Rows and the current one, -1 when there is none.
template <typename Base> struct FakeRows : FakeControl<Base> {
    struct Row {
        std::string text;
        nv::RowIcon icon = nv::RowIcon::None;
        bool selected = false;
    };
    int count() const override { return static_cast<int>(rows.size()); }
    std::string list(int row) const override { return rows.at(row).text; }
    void clear() override {
        rows.clear();
        current_ = -1;
    }
    int listIndex() const override { return current_; }
    void setListIndex(int row) override { current_ = row; }

    std::vector<Row> rows;
    int current_ = -1;
};

struct FakeListBox : FakeRows<nv::ListBox> {
    void addItem(const std::string& text, nv::RowIcon icon) override {
        rows.push_back({text, icon});
    }
    void removeItem(int row) override {
        rows.erase(rows.begin() + row);
        current_ = std::min(current_, count() - 1);
    }
    bool selected(int row) const override { return rows.at(row).selected; }
    void setSelected(int row, bool on) override { rows.at(row).selected = on; }

    // The clicked row becomes the current and only selected row.
    bool clickRow(int row);
    bool doubleClick(int row) { return clickRow(row) && raise(DblClick, row); }
    bool keyDown(int keyCode, int shift) { return raise(KeyDown, keyCode, shift); }
    // The row whose text, without its indent, is text; -1 when there is none.
    int rowOf(const std::string& text) const;
    int selectedCount() const {
        return static_cast<int>(
            std::count_if(rows.begin(), rows.end(), [](const Row& row) { return row.selected; }));
    }
    std::vector<std::string> texts() const {
        std::vector<std::string> out;
        for (const Row& row : rows)
            out.push_back(row.text);
        return out;
    }
};

struct FakeComboBox : FakeRows<nv::ComboBox> {
    void addItem(const std::string& text) override { rows.push_back({text}); }
    // The user opens the list and picks the entry that begins with text.
    bool choose(const std::string& text);
};

struct FakeTimer : nv::TimerControl {
    int interval() const override { return interval_; }
    void setInterval(int milliseconds) override { interval_ = milliseconds; }
    bool enabled() const override { return enabled_; }
    void setEnabled(bool enabled) override { enabled_ = enabled; }
    bool tick() { return enabled_ && Timer && (Timer(), true); }
    int interval_ = 0;
    bool enabled_ = false;
};

struct FakeMenuItem : nv::MenuItem {
    bool enabled() const override { return enabled_; }
    void setEnabled(bool enabled) override { enabled_ = enabled; }
    bool click() { return enabled_ && Click && (Click(), true); }
    bool enabled_ = true;
};

struct FakeStatusBar : nv::StatusBar {
    std::string panelText(int panel) const override { return panels[panel]; }
    void setPanelText(int panel, const std::string& text) override { panels[panel] = text; }
    mutable std::map<int, std::string> panels;
};

struct FakeProgressBar : FakeControl<nv::ProgressBar> {
    int max() const override { return max_; }
    void setMax(int maximum) override { max_ = maximum; }
    int value() const override { return value_; }
    void setValue(int value) override { value_ = value; }
    int max_ = 100;
    int value_ = 0;
};

// Opens a clip that is a file with something in it.
struct FakeAnimation : FakeControl<nv::Animation> {
    std::string clipFileName() const override { return "FILECOPY.AVI"; }
    bool open(const std::string& path) override;
    void play() override { playing = !opened.empty(); }
    void stop() override { playing = false; }
    std::string opened;
    bool playing = false;
};

struct FakeShape : FakeControl<nv::Shape> {
    int kind() const override { return kind_; }
    void setKind(int kind) override { kind_ = kind; }
    // Every place the shape was painted at.
    void repaint() override { painted.push_back(place_); }
    std::vector<nv::TwipsRect> painted;
    int kind_ = kRectangle;
};

struct FakeWindow : FakeCaptioned<nv::Window> {
    FakeWindow() { visible_ = false; }
    // A size the logic sets raises Resize, as a real window's does.
    void setPlace(const nv::TwipsRect& place) override;
    int innerWidth() const override { return place_.width; }
    nv::WindowState state() const override { return state_; }
    void show() override { visible_ = true; }
    void showModal() override {}
    void close() override {
        closed = true;
        visible_ = false;
    }
    void repaint() override {}
    // The user drags the window to this height, or minimises or maximises it.
    void dragToHeight(int height) { setPlace({place_.left, place_.top, place_.width, height}); }
    void setState(nv::WindowState state) { state_ = state; }
    bool closed = false;
    nv::WindowState state_ = nv::WindowState::Normal;
};

// Docked at the window's bottom edge, above the status bar: its Top follows the window's height.
struct FakeDockedPanel : FakeControl<nv::Control> {
    explicit FakeDockedPanel(const FakeWindow& window) : window_(window) { visible_ = false; }
    nv::TwipsRect place() const override {
        return {place_.left, window_.place().height - 375 - place_.height, place_.width,
                place_.height};
    }
    const FakeWindow& window_;
};

struct FakeCopyWindow : nv::FormFace<nv::Frm_Copy> {
    FakeCopyWindow() { Me.setPlace({0, 0, 4605, 3090}); }
    nv::Frm_Copy& form() override { return form_; }

    FakeWindow Me;
    FakeAnimation Animation1;
    FakeProgressBar Pbr;
    FakeTextBox Text1;
    FakeLabel Label1;
    nv::Frm_Copy form_{{&Me, &Animation1, &Pbr, &Text1, &Label1}};
};

struct FakeAboutWindow : nv::FormFace<nv::frmAbout> {
    FakeAboutWindow() {
        Me.setPlace({3120, 2970, 6090, 5040});
        cmdOK.setCaption("OK");
    }
    nv::frmAbout& form() override { return form_; }

    FakeWindow Me;
    FakeLabel lblTitle, lblVersion, lblDescription, lblDisclaimer, LblMail;
    FakeTextBox TxtInfo;
    FakeButton cmdOK;
    nv::frmAbout form_{
        {&Me, &lblTitle, &lblVersion, &lblDescription, &lblDisclaimer, &TxtInfo, &LblMail, &cmdOK}};
};

struct FakeSplashWindow : nv::FormFace<nv::frmSplash> {
    nv::frmSplash& form() override { return form_; }

    FakeWindow Me;
    FakeLabel Frame1, lblCopyright, lblProductName, lblVersion;
    FakeTimer Timer1;
    nv::frmSplash form_{{&Me, &Frame1, &lblCopyright, &lblProductName, &lblVersion, &Timer1}};
};

// FrmMain over fakes laid out as the window is drawn. A backup's copy window is kept after it
// closes, so a test can see what it showed.
struct FakeMainWindow : nv::FrmMainFace {
    FakeMainWindow();
    // Makes the form; its drive list reads the drives now.
    nv::FrmMain& form();
    std::unique_ptr<nv::FormFace<nv::Frm_Copy>> loadCopyWindow() override;
    std::unique_ptr<nv::FormFace<nv::frmAbout>> loadAbout() override {
        return std::make_unique<FakeAboutWindow>();
    }
    void runWithoutInput(const std::function<void()>& work) override {
        if (beforeCopy)
            beforeCopy();
        work();
    }
    void sendKeys(const std::string&) override {}

    // Whether each backup control is on, in the order subButtons sets them: "11110111".
    std::string buttonState() const;
    // The user opens the folders of path below the open one by double clicks, level by level:
    // "Backup2026-11-10\\Norvale".
    bool openFolder(const std::string& path);

    FakeWindow Me;
    FakeTextBox TxtLastBackup;
    FakeLabel Label1, fraDirectory, LblStation, Lbl_InhoudDir, LblRestore[2];
    FakeListBox LstSelectedFiles, TargetDirectories, TargetFileLst;
    FakeShape Shape1;
    FakeButton Cmd_Backup, CmdSelectFiles, CmdVerwijder, CmdDeleteDir, CmdVervers, CmdRestore,
        CmdWizRestore[3];
    FakeComboBox TargetDrive;
    FakeDockedPanel PicRestore{Me};
    FakeStatusBar StatusBar;
    FakeTimer Timer1;
    FakeMenuItem MoVoegToe, MoVerwijder, MoAfsluiten, moBackUp, moRestore, MoHelp, MoAbout;
    std::vector<std::unique_ptr<FakeCopyWindow>> copyWindows;
    // Runs before each copy that runs off the window's thread.
    std::function<void()> beforeCopy;
    std::unique_ptr<nv::FrmMain> form_;
};

} // namespace nvtest
