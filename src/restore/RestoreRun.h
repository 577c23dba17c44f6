#pragma once

#include <cstdint>
#include <string>

namespace nv {

// The selection list as the restore sees it: rows of full paths, selected while still to be
// restored.
class RestoreList {
public:
    virtual ~RestoreList() = default;
    virtual int count() const = 0;
    virtual std::string text(int row) const = 0;
    virtual bool selected(int row) const = 0;
    virtual void setSelected(int row, bool selected) = 0;
};

extern const char* const kRestoreNotFoundText;
extern const char* const kRestoreSameNameText;

// Copies, for every selected row, the file of the same bare name in sourceFolder back onto the
// row's path, and clears the row's selection behind each copy that worked. Returns the caption
// of the result. intLoop is the window's counter and holds the row in hand. A failure of a copy
// is thrown, with the rows done so far cleared. A file another process holds open is not
// replaced: its row stays selected and the result names it.
std::string fRestoreSelectedRows(RestoreList& list, const std::string& sourceFolder,
                                 int16_t& intLoop);

// The caption of a failure in the wizard: its description, the step and the substep.
std::string fWizardFailureText(const std::string& description, int step, int substep);

} // namespace nv
