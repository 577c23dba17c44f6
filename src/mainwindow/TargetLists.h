#pragma once

#include "platform/Controls.h"

#include <functional>
#include <string>
#include <vector>

namespace nv {

// The drive list over a drop-down control: entries "C:" or "E: [LABEL]". Change comes whenever
// the selection moves, by the user or by setDrive, before setDrive returns.
class DriveListBox {
public:
    // Reads the drives and starts on the system drive, as the machine's own lists do.
    explicit DriveListBox(ComboBox& box);

    // The text of the selected entry.
    std::string drive() const;
    // Selects the entry of the drive the text names; FileFailure 68 when it is not available.
    void setDrive(const std::string& text);
    // Reads the drives afresh; the selected entry stays, also when its drive has gone.
    void refill();

    std::function<void()> Change;
    ComboBox& box;
};

// The folder list: the open folder with its parents above it and its subfolders below; a double
// click or Enter on a row opens its folder. Change comes whenever the open folder changes.
class DirListBox {
public:
    explicit DirListBox(ListBox& list);

    std::string path() const { return path_; }
    // Opens the folder, or throws FileFailure and leaves the list as it was.
    void setPath(const std::string& path);
    // Reads the subfolders of the open folder from the disk again.
    void Refresh();

    std::function<void()> Change;
    ListBox& list;

private:
    void open(int row);
    void show(const std::string& path, const std::vector<std::string>& folders);

    std::string path_;
    std::vector<std::string> rowPaths_;
};

// The plain files of one folder.
class FileListBox {
public:
    explicit FileListBox(ListBox& list) : list(list) {}

    std::string path() const { return path_; }
    // Shows the files of the folder, or throws FileFailure and leaves the list as it was.
    void setPath(const std::string& path);

    ListBox& list;

private:
    std::string path_;
};

} // namespace nv
