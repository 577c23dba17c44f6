#pragma once

#include <QFont>

namespace nv {

// The program's sans-serif face at a size in points.
QFont sansFont(double points, bool bold = false);

} // namespace nv
