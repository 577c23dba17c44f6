// Draws the program's pictures (splash banner, emblem, About logo, window icons) as PNG files
// into the folder given as the only argument, and for the Windows program the window icon as an
// .ico file and the other pictures as 24-bit BMP files. Run with QT_QPA_PLATFORM=offscreen.
#include "IcoWriter.h"

#include <QDir>
#include <QFile>
#include <QFont>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QImage>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QRadialGradient>
#include <QStringList>
#include <QtMath>

#include <cmath>
#include <cstdio>

namespace {

const QColor navy{0x0f, 0x26, 0x3d};
const QColor deepBlue{0x16, 0x3d, 0x5c};
const QColor teal{0x1b, 0x7a, 0x84};
const QColor brightTeal{0x2e, 0xa0, 0xa2};
const QColor paleTeal{0xa4, 0xdd, 0xd8};
const QColor mist{0xee, 0xf5, 0xf7};
const QColor steel{0xc8, 0xd5, 0xdd};
const QColor slate{0x5d, 0x74, 0x87};
const QColor green{0x3c, 0xae, 0x72};
// The face of a dialog, where the Windows program shows its pictures.
const QColor dialogFace{240, 240, 240};

QColor withAlpha(QColor colour, int alpha) {
    colour.setAlpha(alpha);
    return colour;
}

QImage blankImage(int width, int height) {
    QImage image(width, height, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    return image;
}

void prepare(QPainter& p) {
    p.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing |
                     QPainter::SmoothPixmapTransform);
    p.setPen(Qt::NoPen);
}

QFont sansFont(int pixelSize, QFont::Weight weight) {
    QFont font(QStringLiteral("Sans Serif"));
    font.setStyleHint(QFont::SansSerif);
    font.setPixelSize(pixelSize);
    font.setWeight(weight);
    return font;
}

// Angles follow Qt's arc convention: degrees, counter-clockwise from three o'clock.
QPointF onCircle(QPointF centre, qreal radius, qreal degrees) {
    const qreal a = qDegreesToRadians(degrees);
    return centre + QPointF(radius * std::cos(a), -radius * std::sin(a));
}

void drawCircleArrow(QPainter& p, QPointF centre, qreal radius, qreal width, const QColor& colour,
                     qreal startDegrees, qreal spanDegrees) {
    const qreal sign = spanDegrees < 0 ? -1.0 : 1.0;
    const qreal headLength = width * 2.1;
    const qreal headHalfWidth = width * 1.45;
    const qreal headDegrees = qRadiansToDegrees(headLength / radius);
    const qreal baseDegrees = startDegrees + spanDegrees - sign * headDegrees;
    const QRectF circle(centre.x() - radius, centre.y() - radius, 2 * radius, 2 * radius);

    QPainterPath arc;
    arc.arcMoveTo(circle, startDegrees);
    // A small overlap under the head hides the seam between stroke and head.
    arc.arcTo(circle, startDegrees, spanDegrees - sign * headDegrees * 0.8);
    p.strokePath(arc, QPen(colour, width, Qt::SolidLine, Qt::RoundCap));

    const QPointF base = onCircle(centre, radius, baseDegrees);
    const QPointF outward = (onCircle(centre, radius, baseDegrees) - centre) / radius;
    QPainterPath head;
    head.moveTo(base + outward * headHalfWidth);
    head.lineTo(onCircle(centre, radius, startDegrees + spanDegrees));
    head.lineTo(base - outward * headHalfWidth);
    head.closeSubpath();
    p.fillPath(head, colour);
}

// A removable stick standing upright in `box`, connector on top.
void drawStick(QPainter& p, const QRectF& box, const QColor& body, const QColor& metal,
               const QColor& detail, bool fine) {
    const qreal connectorHeight = box.height() * 0.28;
    const qreal connectorWidth = box.width() * 0.62;
    const qreal bodyRadius = box.width() * 0.2;
    const QRectF connector(box.center().x() - connectorWidth / 2, box.top(), connectorWidth,
                           connectorHeight + bodyRadius);
    const QRectF bodyRect(box.left(), box.top() + connectorHeight, box.width(),
                          box.height() - connectorHeight);

    QPainterPath connectorPath;
    connectorPath.addRoundedRect(connector, box.width() * 0.06, box.width() * 0.06);
    p.fillPath(connectorPath, metal);
    if (fine) {
        const qreal hole = connectorWidth * 0.2;
        const qreal holeY = box.top() + connectorHeight * 0.38;
        for (const qreal x : {0.28, 0.72}) {
            const QRectF holeRect(connector.left() + connectorWidth * x - hole / 2, holeY, hole,
                                  hole);
            p.fillRect(holeRect, withAlpha(detail, 170));
        }
    }

    QPainterPath bodyPath;
    bodyPath.addRoundedRect(bodyRect, bodyRadius, bodyRadius);
    p.fillPath(bodyPath, body);

    // A coloured collar under the connector and grip ridges keep it from reading as a phone.
    p.save();
    p.setClipPath(bodyPath);
    p.fillRect(QRectF(bodyRect.left(), bodyRect.top(), bodyRect.width(), box.height() * 0.17),
               detail);
    p.restore();
    if (fine) {
        const qreal ridge = box.height() * 0.035;
        const qreal ridgeWidth = box.width() * 0.5;
        for (int i = 0; i < 3; ++i) {
            const QRectF line(bodyRect.center().x() - ridgeWidth / 2,
                              bodyRect.top() + bodyRect.height() * (0.52 + 0.13 * i), ridgeWidth,
                              ridge);
            p.setBrush(withAlpha(detail, 110));
            p.drawRoundedRect(line, ridge / 2, ridge / 2);
        }
    }
}

void drawCheckBadge(QPainter& p, QPointF centre, qreal radius) {
    p.setBrush(Qt::white);
    p.drawEllipse(centre, radius, radius);
    QLinearGradient fill(centre - QPointF(0, radius), centre + QPointF(0, radius));
    fill.setColorAt(0, green.lighter(112));
    fill.setColorAt(1, green.darker(112));
    p.setBrush(fill);
    const qreal inner = radius * 0.84;
    p.drawEllipse(centre, inner, inner);
    p.setBrush(Qt::NoBrush);

    QPainterPath tick;
    tick.moveTo(centre + QPointF(-0.42, 0.02) * inner);
    tick.lineTo(centre + QPointF(-0.12, 0.32) * inner);
    tick.lineTo(centre + QPointF(0.44, -0.3) * inner);
    p.strokePath(tick, QPen(Qt::white, inner * 0.24, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
}

QPainterPath shieldPath(const QRectF& r) {
    const qreal w = r.width();
    const qreal h = r.height();
    const qreal cx = r.center().x();
    QPainterPath path;
    path.moveTo(r.left(), r.top() + 0.13 * h);
    path.quadTo(r.left() + 0.28 * w, r.top() + 0.11 * h, cx, r.top());
    path.quadTo(r.right() - 0.28 * w, r.top() + 0.11 * h, r.right(), r.top() + 0.13 * h);
    path.lineTo(r.right(), r.top() + 0.48 * h);
    path.cubicTo(r.right(), r.top() + 0.76 * h, cx + 0.22 * w, r.top() + 0.9 * h, cx, r.bottom());
    path.cubicTo(cx - 0.22 * w, r.top() + 0.9 * h, r.left(), r.top() + 0.76 * h, r.left(),
                 r.top() + 0.48 * h);
    path.closeSubpath();
    return path;
}

// The emblem: a shield holding a stick inside a circular arrow, with a check badge.
void drawEmblem(QPainter& p, const QRectF& box) {
    const qreal h = std::min(box.height(), box.width() / 0.92);
    const qreal w = h * 0.82;
    const QRectF shield(box.center().x() - w * 0.56, box.center().y() - h / 2, w, h);
    const QPainterPath outline = shieldPath(shield);

    p.fillPath(outline.translated(0, h * 0.025), QColor(0, 0, 0, 55));
    QLinearGradient fill(shield.topLeft(), shield.bottomRight());
    fill.setColorAt(0, brightTeal);
    fill.setColorAt(1, deepBlue);
    p.fillPath(outline, fill);
    p.strokePath(outline, QPen(withAlpha(Qt::white, 235), w * 0.04));

    const QPointF centre(shield.center().x(), shield.top() + 0.47 * h);
    drawCircleArrow(p, centre, w * 0.29, w * 0.06, Qt::white, 115, -295);
    const qreal stickWidth = w * 0.18;
    const qreal stickHeight = w * 0.36;
    drawStick(
        p,
        QRectF(centre.x() - stickWidth / 2, centre.y() - stickHeight / 2, stickWidth, stickHeight),
        Qt::white, paleTeal, teal, true);
    drawCheckBadge(p, QPointF(shield.right() - w * 0.06, shield.top() + h * 0.76), w * 0.19);
}

// A page with a folded corner and a few lines of text.
void drawPage(QPainter& p, const QRectF& r, const QColor& paper) {
    const qreal fold = r.width() * 0.24;
    QPainterPath page;
    page.moveTo(r.topLeft());
    page.lineTo(r.right() - fold, r.top());
    page.lineTo(r.right(), r.top() + fold);
    page.lineTo(r.bottomRight());
    page.lineTo(r.bottomLeft());
    page.closeSubpath();
    p.fillPath(page.translated(0, r.height() * 0.03), QColor(0, 0, 0, 45));
    p.fillPath(page, paper);

    QPainterPath corner;
    corner.moveTo(r.right() - fold, r.top());
    corner.lineTo(r.right() - fold, r.top() + fold);
    corner.lineTo(r.right(), r.top() + fold);
    corner.closeSubpath();
    p.fillPath(corner, steel);

    const qreal lineHeight = r.height() * 0.045;
    const qreal left = r.left() + r.width() * 0.15;
    const qreal lengths[] = {0.45, 0.7, 0.62, 0.7, 0.5, 0.66};
    qreal y = r.top() + r.height() * 0.2;
    for (const qreal length : lengths) {
        const QRectF line(left, y, r.width() * length, lineHeight);
        p.setBrush(withAlpha(slate, 90));
        p.drawRoundedRect(line, lineHeight / 2, lineHeight / 2);
        y += r.height() * 0.12;
    }
}

// Widest pixel size up to `pixelSize` at which `text` fits in `width`.
QFont fittedFont(const QString& text, int pixelSize, QFont::Weight weight, qreal width) {
    QFont font = sansFont(pixelSize, weight);
    while (pixelSize > 8 && QFontMetricsF(font).horizontalAdvance(text) > width) {
        font.setPixelSize(--pixelSize);
    }
    return font;
}

QImage drawSplashBanner() {
    const int width = 964;
    const int height = 300;
    QImage image = blankImage(width, height);
    QPainter p(&image);
    prepare(p);

    QLinearGradient background(0, 0, width, height);
    background.setColorAt(0, navy);
    background.setColorAt(0.55, deepBlue);
    background.setColorAt(1, teal);
    p.fillRect(image.rect(), background);

    p.setBrush(Qt::NoBrush);
    for (int radius = 140; radius <= 520; radius += 70) {
        p.setPen(QPen(withAlpha(Qt::white, 11), 2));
        p.drawEllipse(QPointF(860, 330), radius, radius);
    }
    p.setPen(Qt::NoPen);

    QRadialGradient glow(QPointF(180, 160), 190);
    glow.setColorAt(0, withAlpha(Qt::white, 34));
    glow.setColorAt(1, withAlpha(Qt::white, 0));
    p.fillRect(QRectF(0, 0, 400, height), glow);

    // Pages on the left, copied along the arrow onto the stick on the right.
    const QRectF pageRect(62, 118, 88, 114);
    const qreal pageAngles[] = {-10, -4, 0};
    const QColor papers[] = {mist.darker(108), mist, Qt::white};
    for (int i = 0; i < 3; ++i) {
        p.save();
        p.translate(pageRect.center() + QPointF(-8.0 * (2 - i), 4.0 * (2 - i)));
        p.rotate(pageAngles[i]);
        drawPage(p, pageRect.translated(-pageRect.center()), papers[i]);
        p.restore();
    }
    drawStick(p, QRectF(236, 124, 58, 124), Qt::white, steel, teal, true);
    drawCircleArrow(p, QPointF(190, 190), 108, 9, paleTeal, 140, -92);

    p.setBrush(withAlpha(Qt::white, 60));
    p.drawRect(QRectF(350, 76, 2, 148));

    const qreal textLeft = 388;
    const qreal textWidth = width - textLeft - 44;
    const QString name = QStringLiteral("Norvale");
    const QString product = QStringLiteral(" Backup");
    QFont title = fittedFont(name + product, 74, QFont::Bold, textWidth);
    QFont titleLight = title;
    titleLight.setWeight(QFont::Normal);
    const qreal baseline = 160;
    p.setFont(title);
    p.setPen(Qt::white);
    p.drawText(QPointF(textLeft, baseline), name);
    const qreal nameWidth = QFontMetricsF(title).horizontalAdvance(name);
    p.setFont(titleLight);
    p.setPen(paleTeal);
    p.drawText(QPointF(textLeft + nameWidth, baseline), product);

    QFont subtitle = sansFont(30, QFont::Normal);
    subtitle.setLetterSpacing(QFont::AbsoluteSpacing, 2.5);
    p.setFont(subtitle);
    p.setPen(withAlpha(Qt::white, 210));
    p.drawText(QPointF(textLeft + 3, baseline + 56), QStringLiteral("Backup & Restore"));

    QLinearGradient band(0, 0, width, 0);
    band.setColorAt(0, brightTeal);
    band.setColorAt(1, paleTeal);
    p.setPen(Qt::NoPen);
    p.fillRect(QRectF(0, height - 6, width, 6), band);
    return image;
}

QImage drawSplashSquare() {
    QImage image = blankImage(210, 180);
    QPainter p(&image);
    prepare(p);
    const QRectF tile = QRectF(image.rect()).adjusted(2, 2, -2, -2);
    QLinearGradient background(tile.topLeft(), tile.bottomRight());
    background.setColorAt(0, navy);
    background.setColorAt(1, teal);
    p.setBrush(background);
    p.drawRoundedRect(tile, 18, 18);
    drawEmblem(p, tile.adjusted(22, 16, -22, -16));
    return image;
}

QImage drawAboutLogo() {
    QImage image = blankImage(220, 178);
    QPainter p(&image);
    prepare(p);
    const QRectF tile = QRectF(image.rect()).adjusted(2, 2, -2, -2);
    QLinearGradient background(tile.topLeft(), tile.bottomLeft());
    background.setColorAt(0, Qt::white);
    background.setColorAt(1, mist);
    p.setBrush(background);
    p.setPen(QPen(steel, 2));
    p.drawRoundedRect(tile, 18, 18);
    p.setPen(Qt::NoPen);
    drawEmblem(p, tile.adjusted(24, 14, -24, -14));
    return image;
}

QImage drawWindowIcon(int size) {
    QImage image = blankImage(size, size);
    QPainter p(&image);
    prepare(p);
    const qreal s = size;
    const bool fine = size >= 48;
    const qreal margin = s * 0.04;
    const QRectF tile(margin, margin, s - 2 * margin, s - 2 * margin);
    QLinearGradient background(tile.topLeft(), tile.bottomRight());
    background.setColorAt(0, brightTeal);
    background.setColorAt(1, navy);
    p.setBrush(background);
    p.drawRoundedRect(tile, s * 0.2, s * 0.2);

    const QPointF centre(s / 2, s / 2);
    drawCircleArrow(p, centre, s * 0.3, s * (fine ? 0.065 : 0.085), Qt::white, 115, -295);
    const qreal stickWidth = s * (fine ? 0.19 : 0.22);
    const qreal stickHeight = s * (fine ? 0.38 : 0.42);
    drawStick(
        p,
        QRectF(centre.x() - stickWidth / 2, centre.y() - stickHeight / 2, stickWidth, stickHeight),
        Qt::white, paleTeal, teal, fine);
    if (fine) {
        drawCheckBadge(p, QPointF(s * 0.77, s * 0.77), s * 0.15);
    }
    return image;
}

// GDI's LoadImage reads BMP without alpha, so the Windows program gets each picture flattened
// on the face it stands on.
QImage onDialogFace(const QImage& picture) {
    QImage flat(picture.size(), QImage::Format_RGB32);
    flat.fill(dialogFace);
    QPainter p(&flat);
    p.drawImage(0, 0, picture);
    p.end();
    return flat.convertToFormat(QImage::Format_RGB888);
}

bool writeIcon(const QString& path) {
    std::vector<QImage> sizes;
    for (int size : {16, 24, 32, 48, 256})
        sizes.push_back(drawWindowIcon(size));
    const QByteArray bytes = icoFile(sizes);
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

} // namespace

int main(int argc, char** argv) {
    QGuiApplication app(argc, argv);
    const QStringList arguments = QGuiApplication::arguments();
    if (arguments.size() != 2) {
        std::fprintf(stderr, "usage: draw_pictures <output folder>\n");
        return 2;
    }
    const QDir folder(arguments.at(1));
    if (!folder.mkpath(QStringLiteral("."))) {
        std::fprintf(stderr, "draw_pictures: cannot create %s\n", qPrintable(folder.path()));
        return 1;
    }

    const QImage splashBanner = drawSplashBanner();
    const QImage splashSquare = drawSplashSquare();
    const QImage aboutLogo = drawAboutLogo();
    const struct {
        const char* name;
        QImage image;
        const char* format;
    } pictures[] = {
        {"splash-banner.png", splashBanner, "PNG"},
        {"splash-square.png", splashSquare, "PNG"},
        {"about-logo.png", aboutLogo, "PNG"},
        {"window-icon.png", drawWindowIcon(256), "PNG"},
        {"window-icon-48.png", drawWindowIcon(48), "PNG"},
        {"window-icon-32.png", drawWindowIcon(32), "PNG"},
        {"splash-banner.bmp", onDialogFace(splashBanner), "BMP"},
        {"splash-square.bmp", onDialogFace(splashSquare), "BMP"},
        {"about-logo.bmp", onDialogFace(aboutLogo), "BMP"},
    };
    for (const auto& picture : pictures) {
        const QString path = folder.filePath(QString::fromLatin1(picture.name));
        if (!picture.image.save(path, picture.format)) {
            std::fprintf(stderr, "draw_pictures: cannot write %s\n", qPrintable(path));
            return 1;
        }
    }
    const QString icon = folder.filePath(QStringLiteral("window-icon.ico"));
    if (!writeIcon(icon)) {
        std::fprintf(stderr, "draw_pictures: cannot write %s\n", qPrintable(icon));
        return 1;
    }
    return 0;
}
