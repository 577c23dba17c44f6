#include "mainwindow/TargetLists.h"

#include "platform/FailureText.h"
#include "platform/Platform.h"
#include "startup/FileOps.h"
#include "startup/Paths.h"

#include <cctype>

namespace nv {

namespace {

char upper(char c) {
    return static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
}

// The row of the drive of that letter, -1 when the list holds none.
int rowOf(const ComboBox& box, char letter) {
    for (int row = 0; row < box.count(); ++row) {
        const std::string entry = box.list(row);
        if (!entry.empty() && upper(entry[0]) == letter)
            return row;
    }
    return -1;
}

} // namespace

DriveListBox::DriveListBox(ComboBox& box) : box(box) {
    refill();
    int system = rowOf(box, 'C');
    if (box.count() > 0)
        box.setListIndex(system >= 0 ? system : 0);
    box.Click = [this] {
        if (Change)
            Change();
    };
    box.DropDown = [this] { refill(); };
}

std::string DriveListBox::drive() const {
    const int row = box.listIndex();
    return row >= 0 && row < box.count() ? box.list(row) : std::string();
}

void DriveListBox::refill() {
    const std::string selected = drive();
    box.clear();
    bool kept = false;
    for (const DriveInfo& each : platform().drives->list()) {
        std::string entry = std::string(1, each.letter) + ':';
        if (!each.label.empty())
            entry += " [" + each.label + "]";
        box.addItem(entry);
        if (!selected.empty() && upper(selected[0]) == each.letter) {
            box.setListIndex(box.count() - 1);
            kept = true;
        }
    }
    if (!selected.empty() && !kept) {
        box.addItem(selected);
        box.setListIndex(box.count() - 1);
    }
}

void DriveListBox::setDrive(const std::string& text) {
    if (text.size() < 2 || text[1] != ':' || !std::isalpha(static_cast<unsigned char>(text[0])))
        throw fileFailure(kFailDeviceUnavailable);
    const char letter = upper(text[0]);
    if (!platform().drives->ready(letter))
        throw fileFailure(kFailDeviceUnavailable);
    int row = rowOf(box, letter);
    if (row < 0) {
        refill();
        row = rowOf(box, letter);
    }
    if (row < 0)
        throw fileFailure(kFailDeviceUnavailable);
    const bool moved = row != box.listIndex();
    box.setListIndex(row);
    if (moved && Change)
        Change();
}

DirListBox::DirListBox(ListBox& list) : list(list) {
    list.DblClick = [this](int row) { open(row); };
    // Enter opens the current folder, as a double click does.
    list.KeyDown = [this](int keyCode, int) {
        if (keyCode == kKeyReturn)
            open(this->list.listIndex());
    };
}

void DirListBox::open(int row) {
    if (row < 0 || row >= static_cast<int>(rowPaths_.size()))
        return;
    // The list is rebuilt by the opening, so the row's path is taken first.
    const std::string folder = rowPaths_[static_cast<std::size_t>(row)];
    try {
        setPath(folder);
    } catch (const FileFailure&) {
        // A folder that has gone meanwhile simply does not open.
    }
}

void DirListBox::setPath(const std::string& path) {
    const std::string folder = folderWithoutTrailingBackslash(path);
    auto folders = fListFolders(folder);
    const bool changed = folder != path_;
    show(folder, folders);
    if (changed && Change)
        Change();
}

void DirListBox::Refresh() {
    if (!path_.empty())
        show(path_, fListFolders(path_));
}

void DirListBox::show(const std::string& path, const std::vector<std::string>& folders) {
    path_ = path;
    list.clear();
    rowPaths_.clear();
    std::string walked;
    int depth = 0;
    for (const std::string& part : splitPath(path)) {
        if (part.empty())
            continue;
        walked += part + '\\';
        const std::string opened = folderWithoutTrailingBackslash(walked);
        list.addItem(std::string(depth * 2, ' ') + (depth ? part : opened), RowIcon::OpenFolder);
        rowPaths_.push_back(opened);
        ++depth;
    }
    list.setListIndex(list.count() - 1);
    const std::string base = folderWithTrailingBackslash(path);
    for (const std::string& name : folders) {
        list.addItem(std::string(depth * 2, ' ') + name, RowIcon::ClosedFolder);
        rowPaths_.push_back(base + name);
    }
}

void FileListBox::setPath(const std::string& path) {
    const std::string folder = folderWithoutTrailingBackslash(path);
    auto names = fListFiles(folder, "*.*");
    path_ = folder;
    list.clear();
    for (const std::string& name : names)
        list.addItem(name);
}

} // namespace nv
