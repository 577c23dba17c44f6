#include "production/KnownFile.h"

namespace nv {

const std::array<KnownFile, 11> kKnownFiles = {{
    {0, "NV_Ledger01.mdb"},
    {1, "NV_Lists97.mdb"},
    {2, "panels.ini"},
    {3, "NV_Entity.NVD"},
    {4, "NVbackuptool.ini"},
    {5, "Nota.ini"},
    {6, "NV.ini"},
    {7, "Refresh.ini"},
    {8, "stockA.NVD"},
    {9, "stockB.NVD"},
    {10, "NV_stock.NVD"},
}};

std::string fKnownFileName(int row) {
    if (row < 0 || row > 10)
        return "";
    return kKnownFiles[static_cast<std::size_t>(row)].name;
}

uint8_t fFileMissing(int row) {
    return isRequiredRow(row) ? 1 : 2;
}

} // namespace nv
