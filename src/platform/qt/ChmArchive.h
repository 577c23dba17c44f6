#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <memory>
#include <optional>

struct chmFile;

namespace nv {

// A compiled help file opened for reading: its pages, pictures, contents and index by their
// paths inside the file ("/index.html").
class ChmArchive {
public:
    // Nothing when the file is not there or is no help file.
    static std::unique_ptr<ChmArchive> open(const QString& nativePath);
    ~ChmArchive();
    ChmArchive(const ChmArchive&) = delete;
    ChmArchive& operator=(const ChmArchive&) = delete;

    std::optional<QByteArray> read(const QString& path) const;
    // The paths of the files it holds, its own bookkeeping ("/#SYSTEM") left out.
    QStringList files() const;
    // The first file whose name ends in suffix (".hhc"), or "".
    QString firstEndingIn(const QString& suffix) const;

private:
    explicit ChmArchive(chmFile* file) : file_(file) {}
    chmFile* file_;
};

} // namespace nv
