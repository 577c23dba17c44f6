#include "platform/qt/Twips.h"

#include <QGuiApplication>
#include <QScreen>
#include <cmath>

namespace nv {

namespace {

double logicalDpi() {
    QScreen* screen = QGuiApplication::primaryScreen();
    double dpi = screen ? screen->logicalDotsPerInchY() : 96.0;
    return dpi > 0 ? dpi : 96.0;
}

} // namespace

int twips(int value) {
    return static_cast<int>(std::lround(value * logicalDpi() / 1440.0));
}

QRect twipsRect(int left, int top, int width, int height) {
    return {twips(left), twips(top), twips(width), twips(height)};
}

int pixelsToTwips(int pixels) {
    return static_cast<int>(std::lround(pixels * 1440.0 / logicalDpi()));
}

} // namespace nv
