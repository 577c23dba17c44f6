#include "IcoWriter.h"

#include <QBuffer>

namespace {

void put16(QByteArray& out, int value) {
    out.append(static_cast<char>(value & 0xff));
    out.append(static_cast<char>((value >> 8) & 0xff));
}

void put32(QByteArray& out, qint64 value) {
    put16(out, static_cast<int>(value & 0xffff));
    put16(out, static_cast<int>((value >> 16) & 0xffff));
}

QByteArray pngEntry(const QImage& image) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return bytes;
}

// A BITMAPINFOHEADER of twice the height (colour rows, then the mask's), the colours bottom-up
// with straight alpha, and the mask set where the icon is fully transparent.
QByteArray dibEntry(const QImage& picture) {
    const QImage image = picture.convertToFormat(QImage::Format_ARGB32);
    const int size = image.width();
    const int maskStride = (size + 31) / 32 * 4;
    QByteArray out;
    put32(out, 40);
    put32(out, size);
    put32(out, 2 * size);
    put16(out, 1);
    put16(out, 32);
    put32(out, 0); // BI_RGB
    put32(out, size * size * 4 + maskStride * size);
    for (int unused = 0; unused < 4; ++unused)
        put32(out, 0);
    for (int y = size - 1; y >= 0; --y)
        for (int x = 0; x < size; ++x)
            put32(out, image.pixel(x, y)); // 0xAARRGGBB, little-endian: B, G, R, A
    for (int y = size - 1; y >= 0; --y) {
        QByteArray row(maskStride, '\0');
        for (int x = 0; x < size; ++x)
            if (qAlpha(image.pixel(x, y)) == 0)
                row[x / 8] = static_cast<char>(row[x / 8] | (0x80 >> (x % 8)));
        out.append(row);
    }
    return out;
}

} // namespace

QByteArray icoFile(const std::vector<QImage>& images) {
    std::vector<QByteArray> entries;
    for (const QImage& image : images)
        entries.push_back(image.width() >= 256 ? pngEntry(image) : dibEntry(image));

    QByteArray out;
    put16(out, 0);
    put16(out, 1); // an icon, not a cursor
    put16(out, static_cast<int>(images.size()));
    qint64 offset = 6 + 16 * static_cast<qint64>(images.size());
    for (std::size_t i = 0; i < images.size(); ++i) {
        const int size = images[i].width();
        out.append(static_cast<char>(size >= 256 ? 0 : size)); // 0 stands for 256
        out.append(static_cast<char>(size >= 256 ? 0 : size));
        out.append('\0'); // no palette
        out.append('\0');
        put16(out, 1);
        put16(out, 32);
        put32(out, entries[i].size());
        put32(out, offset);
        offset += entries[i].size();
    }
    for (const QByteArray& entry : entries)
        out.append(entry);
    return out;
}
