#pragma once

#include "restore/RestoreRun.h"

#include <string>
#include <vector>

namespace nvtest {

// The restore's list of rows (full paths in drive form), every row selected when given.
class RestoreRows : public nv::RestoreList {
public:
    explicit RestoreRows(std::vector<std::string> rows = {}) { select(std::move(rows)); }
    void select(std::vector<std::string> rows) {
        texts = std::move(rows);
        flags.assign(texts.size(), true);
    }
    int count() const override { return static_cast<int>(texts.size()); }
    std::string text(int row) const override { return texts[row]; }
    bool selected(int row) const override { return flags[row]; }
    void setSelected(int row, bool on) override { flags[row] = on; }

    std::vector<std::string> texts;
    std::vector<bool> flags;
};

} // namespace nvtest
