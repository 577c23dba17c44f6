#pragma once
// A Windows icon file of several sizes.
#include <QByteArray>
#include <QImage>

#include <vector>

// `images` are square, 256 pixels at most. Sizes under 256 go in as 32-bit DIBs with an AND
// mask, which every icon reader takes; 256 as PNG, which Windows reads at that size since Vista.
QByteArray icoFile(const std::vector<QImage>& images);
