#include "platform/qt/HelpSitemap.h"

#include <QRegularExpression>
#include <QTextDocumentFragment>

namespace nv {

namespace {

QString valueOf(const QString& object, const QString& param) {
    static const QRegularExpression params(
        R"re(<param\s+name\s*=\s*"([^"]*)"\s+value\s*=\s*"([^"]*)"\s*/?>)re",
        QRegularExpression::CaseInsensitiveOption);
    for (auto it = params.globalMatch(object); it.hasNext();) {
        auto match = it.next();
        if (match.captured(1).compare(param, Qt::CaseInsensitive) == 0)
            return QTextDocumentFragment::fromHtml(match.captured(2)).toPlainText();
    }
    return {};
}

} // namespace

QList<HelpTopic> parseSitemap(const QByteArray& sitemap) {
    // Lists nest the entries; each entry is an object of type text/sitemap.
    static const QRegularExpression parts(
        R"re(<(/?)ul\b[^>]*>|<object\b[^>]*type\s*=\s*"text/sitemap"[^>]*>(.*?)</object\s*>)re",
        QRegularExpression::CaseInsensitiveOption | QRegularExpression::DotMatchesEverythingOption);
    QList<HelpTopic> topics;
    int lists = 0;
    for (auto it = parts.globalMatch(QString::fromUtf8(sitemap)); it.hasNext();) {
        auto match = it.next();
        if (!match.captured(0).startsWith("<object", Qt::CaseInsensitive)) {
            lists += match.captured(1).isEmpty() ? 1 : -1;
            continue;
        }
        QString object = match.captured(2);
        HelpTopic topic{valueOf(object, "Name"), valueOf(object, "Local"), std::max(0, lists - 1)};
        if (!topic.name.isEmpty())
            topics.append(topic);
    }
    return topics;
}

} // namespace nv
