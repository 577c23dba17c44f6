#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

namespace nv {

// One entry of a help file's contents or index: its text, the page it leads to and how deep
// it lies in the tree (0 for the top).
struct HelpTopic {
    QString name;
    QString page;
    int depth = 0;
    bool operator==(const HelpTopic&) const = default;
};

// The entries of a contents (.hhc) or index (.hhk) file, in their order.
QList<HelpTopic> parseSitemap(const QByteArray& sitemap);

} // namespace nv
