// Draws the copy window's clip, a sheet of paper flying from a folder into a memory stick, and
// writes it as a looping animated GIF for the Qt program and as an AVI for the Windows program's
// Animation control, with the same frames, colours and timing. The GIF is read back through Qt's
// own GIF reader and compared pixel by pixel before the tool reports success.
// Run with QT_QPA_PLATFORM=offscreen.
#include "AviWriter.h"

#include <QColor>
#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QImageReader>
#include <QPainter>
#include <QPainterPath>
#include <QStringList>
#include <QtMath>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <map>
#include <unordered_map>
#include <vector>

namespace {

// 3975 x 855 twips at 96 dots per inch.
constexpr int kWidth = 265;
constexpr int kHeight = 57;
constexpr int kFrames = 16;
// Frames in which the sheet is under way; in the rest the stick shows that it took it.
constexpr int kFlightFrames = 13;
constexpr int kDelayHundredths = 8;

// The face of a dialog, so the clip sits on the window without a visible box.
const QColor dialogFace{240, 240, 240};
const QColor navy{0x0f, 0x26, 0x3d};
const QColor deepBlue{0x16, 0x3d, 0x5c};
const QColor teal{0x1b, 0x7a, 0x84};
const QColor steel{0xc8, 0xd5, 0xdd};
const QColor slate{0x5d, 0x74, 0x87};
const QColor green{0x3c, 0xae, 0x72};
const QColor folderBack{0xd9, 0xa4, 0x38};
const QColor folderFront{0xf2, 0xc6, 0x5c};
const QColor folderEdge{0xa8, 0x78, 0x1c};

// The sheet rises out of the folder and goes into the face of the stick.
const QPointF flightStart{40, 38};
const QPointF flightTop{132, -4};
const QPointF flightEnd{229, 30};

QPointF onFlight(qreal t) {
    const qreal s = 1 - t;
    return s * s * flightStart + 2 * s * t * flightTop + t * t * flightEnd;
}

void drawFolderBack(QPainter& p) {
    QPainterPath back;
    back.moveTo(12, 50);
    back.lineTo(12, 14);
    back.lineTo(28, 14);
    back.lineTo(32, 19);
    back.lineTo(64, 19);
    back.lineTo(64, 50);
    back.closeSubpath();
    p.setPen(QPen(folderEdge, 1.2));
    p.setBrush(folderBack);
    p.drawPath(back);
}

void drawFolderFront(QPainter& p) {
    QPainterPath front;
    front.moveTo(10, 50);
    front.lineTo(15, 28);
    front.lineTo(70, 28);
    front.lineTo(65, 50);
    front.closeSubpath();
    p.setPen(QPen(folderEdge, 1.2));
    p.setBrush(folderFront);
    p.drawPath(front);
}

void drawStick(QPainter& p, bool lit) {
    // The connector on top, where the sheet goes in.
    p.setPen(QPen(slate, 1));
    p.setBrush(steel);
    p.drawRect(QRectF(221.5, 6.5, 15, 9));
    p.setBrush(slate);
    p.setPen(Qt::NoPen);
    p.drawRect(QRectF(224, 9, 3, 3));
    p.drawRect(QRectF(231, 9, 3, 3));

    p.setPen(QPen(navy, 1.2));
    p.setBrush(deepBlue);
    p.drawRoundedRect(QRectF(214.5, 15.5, 29, 37), 5, 5);
    p.setPen(Qt::NoPen);
    p.setBrush(teal);
    p.drawRect(QRectF(219, 24, 20, 12));
    p.setBrush(lit ? green : slate);
    p.drawEllipse(QPointF(229, 45), 2.6, 2.6);
    if (lit) {
        p.setBrush(QColor(green.red(), green.green(), green.blue(), 90));
        p.drawEllipse(QPointF(229, 45), 5, 5);
    }
}

void drawTrail(QPainter& p) {
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(slate.red(), slate.green(), slate.blue(), 70));
    for (int dot = 2; dot < 19; ++dot)
        p.drawEllipse(onFlight(dot / 20.0), 1.1, 1.1);
}

void drawSheet(QPainter& p, QPointF centre, qreal degrees, qreal scale) {
    p.save();
    p.translate(centre);
    p.rotate(degrees);
    p.scale(scale, scale);
    QPainterPath sheet;
    sheet.moveTo(-8, -10);
    sheet.lineTo(4, -10);
    sheet.lineTo(8, -6);
    sheet.lineTo(8, 10);
    sheet.lineTo(-8, 10);
    sheet.closeSubpath();
    p.setPen(QPen(slate, 1));
    p.setBrush(Qt::white);
    p.drawPath(sheet);
    p.setBrush(steel);
    p.drawPolygon(QPolygonF{QPointF(4, -10), QPointF(4, -6), QPointF(8, -6)});
    p.setPen(QPen(steel, 1.2));
    for (int line = 0; line < 4; ++line)
        p.drawLine(QPointF(-5, -4 + 3.5 * line), QPointF(5, -4 + 3.5 * line));
    p.restore();
}

QImage drawFrame(int frame) {
    QImage image(kWidth, kHeight, QImage::Format_RGB32);
    image.fill(dialogFace);
    QPainter p(&image);
    p.setRenderHints(QPainter::Antialiasing);
    drawTrail(p);
    drawFolderBack(p);
    const bool flying = frame < kFlightFrames;
    const qreal t = frame / qreal(kFlightFrames - 1);
    // The sheet leans forward on the way up and back on the way down, and it goes into the
    // stick at a third of its size.
    const qreal lean = -18 + 36 * t;
    const qreal scale = t < 0.8 ? 0.9 : 0.9 - (t - 0.8) / 0.2 * 0.6;
    // Near the folder the sheet is behind the folder's front, near the stick in front of it.
    if (flying && t < 0.5)
        drawSheet(p, onFlight(t), lean, scale);
    drawFolderFront(p);
    drawStick(p, frame >= kFlightFrames - 1);
    if (flying && t >= 0.5)
        drawSheet(p, onFlight(t), lean, scale);
    return image;
}

int distance(QRgb a, QRgb b) {
    const int r = qRed(a) - qRed(b), g = qGreen(a) - qGreen(b), bl = qBlue(a) - qBlue(b);
    return r * r + g * g + bl * bl;
}

// The 256 colours met most often over all frames; the drawing has few flat colours, so the rest
// are edge shades that land on a close neighbour.
std::vector<QRgb> commonColours(const std::vector<QImage>& frames) {
    std::unordered_map<QRgb, int> counts;
    for (const QImage& frame : frames)
        for (int y = 0; y < frame.height(); ++y)
            for (int x = 0; x < frame.width(); ++x)
                ++counts[frame.pixel(x, y) | 0xff000000u];
    std::vector<std::pair<int, QRgb>> ranked;
    for (const auto& [colour, count] : counts)
        ranked.emplace_back(count, colour);
    std::sort(ranked.begin(), ranked.end(), [](const auto& a, const auto& b) {
        return a.first != b.first ? a.first > b.first : a.second < b.second;
    });
    std::vector<QRgb> palette;
    for (std::size_t i = 0; i < ranked.size() && i < 256; ++i)
        palette.push_back(ranked[i].second);
    palette.resize(256, qRgb(0, 0, 0));
    return palette;
}

std::vector<uint8_t> indexed(const QImage& frame, const std::vector<QRgb>& palette,
                             std::map<QRgb, uint8_t>& nearest) {
    std::vector<uint8_t> out;
    out.reserve(static_cast<std::size_t>(frame.width() * frame.height()));
    for (int y = 0; y < frame.height(); ++y) {
        for (int x = 0; x < frame.width(); ++x) {
            const QRgb colour = frame.pixel(x, y) | 0xff000000u;
            auto found = nearest.find(colour);
            if (found == nearest.end()) {
                std::size_t best = 0;
                for (std::size_t i = 1; i < palette.size(); ++i)
                    if (distance(colour, palette[i]) < distance(colour, palette[best]))
                        best = i;
                found = nearest.emplace(colour, static_cast<uint8_t>(best)).first;
            }
            out.push_back(found->second);
        }
    }
    return out;
}

// Variable-length codes, least significant bit first, in blocks of at most 255 bytes.
class CodeWriter {
public:
    void put(unsigned code, unsigned bits) {
        buffer_ |= static_cast<uint32_t>(code) << filled_;
        filled_ += bits;
        while (filled_ >= 8) {
            bytes_.push_back(static_cast<uint8_t>(buffer_ & 0xff));
            buffer_ >>= 8;
            filled_ -= 8;
        }
    }
    std::vector<uint8_t> blocks() {
        if (filled_ > 0)
            bytes_.push_back(static_cast<uint8_t>(buffer_ & 0xff));
        std::vector<uint8_t> out;
        for (std::size_t at = 0; at < bytes_.size(); at += 255) {
            const std::size_t size = std::min<std::size_t>(255, bytes_.size() - at);
            out.push_back(static_cast<uint8_t>(size));
            out.insert(out.end(), bytes_.begin() + static_cast<std::ptrdiff_t>(at),
                       bytes_.begin() + static_cast<std::ptrdiff_t>(at + size));
        }
        out.push_back(0);
        return out;
    }

private:
    uint32_t buffer_ = 0;
    unsigned filled_ = 0;
    std::vector<uint8_t> bytes_;
};

std::vector<uint8_t> lzw(const std::vector<uint8_t>& pixels) {
    constexpr unsigned minimumCodeSize = 8;
    constexpr unsigned clearCode = 1u << minimumCodeSize;
    constexpr unsigned endCode = clearCode + 1;
    constexpr unsigned largestCode = 4095;
    CodeWriter writer;
    std::unordered_map<uint32_t, unsigned> table; // (prefix code << 8 | pixel) -> code
    unsigned codeSize = minimumCodeSize + 1;
    unsigned lastCode = endCode;
    writer.put(clearCode, codeSize);
    unsigned prefix = pixels.front();
    for (std::size_t i = 1; i < pixels.size(); ++i) {
        const uint32_t key = (prefix << 8) | pixels[i];
        if (auto known = table.find(key); known != table.end()) {
            prefix = known->second;
            continue;
        }
        writer.put(prefix, codeSize);
        table.emplace(key, ++lastCode);
        if (lastCode >= (1u << codeSize))
            ++codeSize;
        if (lastCode == largestCode) {
            writer.put(clearCode, codeSize);
            table.clear();
            codeSize = minimumCodeSize + 1;
            lastCode = endCode;
        }
        prefix = pixels[i];
    }
    writer.put(prefix, codeSize);
    writer.put(endCode, codeSize);
    std::vector<uint8_t> out{static_cast<uint8_t>(minimumCodeSize)};
    const std::vector<uint8_t> blocks = writer.blocks();
    out.insert(out.end(), blocks.begin(), blocks.end());
    return out;
}

void putWord(std::vector<uint8_t>& out, int value) {
    out.push_back(static_cast<uint8_t>(value & 0xff));
    out.push_back(static_cast<uint8_t>((value >> 8) & 0xff));
}

std::vector<uint8_t> gif(const std::vector<std::vector<uint8_t>>& frames,
                         const std::vector<QRgb>& palette) {
    std::vector<uint8_t> out{'G', 'I', 'F', '8', '9', 'a'};
    putWord(out, kWidth);
    putWord(out, kHeight);
    out.insert(out.end(), {0xf7, 0, 0}); // a global table of 256 colours of 8 bits
    for (QRgb colour : palette)
        out.insert(out.end(),
                   {static_cast<uint8_t>(qRed(colour)), static_cast<uint8_t>(qGreen(colour)),
                    static_cast<uint8_t>(qBlue(colour))});
    // Loop for ever.
    const char loop[] = "\x21\xff\x0bNETSCAPE2.0\x03\x01\x00\x00\x00";
    out.insert(out.end(), loop, loop + sizeof loop - 1);
    for (const auto& frame : frames) {
        out.insert(out.end(), {0x21, 0xf9, 4, 0x04}); // each frame stays until the next one
        putWord(out, kDelayHundredths);
        out.insert(out.end(), {0, 0});
        out.push_back(0x2c);
        putWord(out, 0);
        putWord(out, 0);
        putWord(out, kWidth);
        putWord(out, kHeight);
        out.push_back(0);
        const std::vector<uint8_t> data = lzw(frame);
        out.insert(out.end(), data.begin(), data.end());
    }
    out.push_back(0x3b);
    return out;
}

bool readsBackAs(const QString& path, const std::vector<std::vector<uint8_t>>& frames,
                 const std::vector<QRgb>& palette) {
    QImageReader reader(path, "gif");
    if (reader.imageCount() != kFrames || reader.loopCount() != -1)
        return false;
    for (const auto& frame : frames) {
        const QImage image = reader.read().convertToFormat(QImage::Format_RGB32);
        if (image.size() != QSize(kWidth, kHeight) ||
            reader.nextImageDelay() != 10 * kDelayHundredths)
            return false;
        for (int y = 0; y < kHeight; ++y)
            for (int x = 0; x < kWidth; ++x)
                if ((image.pixel(x, y) | 0xff000000u) !=
                    (palette[frame[static_cast<std::size_t>(y * kWidth + x)]] | 0xff000000u))
                    return false;
    }
    return true;
}

bool writeFile(const QString& path, const std::vector<uint8_t>& bytes) {
    QFile file(path);
    return file.open(QIODevice::WriteOnly) &&
           file.write(reinterpret_cast<const char*>(bytes.data()),
                      static_cast<qint64>(bytes.size())) == static_cast<qint64>(bytes.size());
}

} // namespace

int main(int argc, char** argv) {
    QGuiApplication app(argc, argv);
    const QStringList arguments = QGuiApplication::arguments();
    if (arguments.size() != 3) {
        std::fprintf(stderr, "usage: draw_clip <GIF file> <AVI file>\n");
        return 2;
    }
    const QString gifPath = arguments.at(1);
    const QString aviPath = arguments.at(2);

    std::vector<QImage> pictures;
    for (int frame = 0; frame < kFrames; ++frame)
        pictures.push_back(drawFrame(frame));
    const std::vector<QRgb> palette = commonColours(pictures);
    std::map<QRgb, uint8_t> nearest;
    std::vector<std::vector<uint8_t>> frames;
    for (const QImage& picture : pictures)
        frames.push_back(indexed(picture, palette, nearest));

    const AviClip clip{kWidth, kHeight, kDelayHundredths * 10000,
                       std::vector<uint32_t>(palette.begin(), palette.end()), frames};
    for (const auto& [path, bytes] :
         {std::pair{gifPath, gif(frames, palette)}, std::pair{aviPath, aviFile(clip)}}) {
        if (!writeFile(path, bytes)) {
            std::fprintf(stderr, "draw_clip: cannot write %s\n", qPrintable(path));
            return 1;
        }
    }
    if (!readsBackAs(gifPath, frames, palette)) {
        std::fprintf(stderr, "draw_clip: %s does not read back as drawn\n", qPrintable(gifPath));
        return 1;
    }
    return 0;
}
