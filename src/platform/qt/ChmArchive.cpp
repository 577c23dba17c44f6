#include "platform/qt/ChmArchive.h"

#include <QFile>

#include <chm_lib.h>

namespace nv {

std::unique_ptr<ChmArchive> ChmArchive::open(const QString& nativePath) {
    chmFile* file = chm_open(QFile::encodeName(nativePath).constData());
    if (!file)
        return nullptr;
    return std::unique_ptr<ChmArchive>(new ChmArchive(file));
}

ChmArchive::~ChmArchive() {
    chm_close(file_);
}

std::optional<QByteArray> ChmArchive::read(const QString& path) const {
    chmUnitInfo unit{};
    if (chm_resolve_object(file_, path.toUtf8().constData(), &unit) != CHM_RESOLVE_SUCCESS)
        return std::nullopt;
    QByteArray bytes(static_cast<qsizetype>(unit.length), Qt::Uninitialized);
    if (unit.length > 0 &&
        chm_retrieve_object(file_, &unit, reinterpret_cast<unsigned char*>(bytes.data()), 0,
                            static_cast<LONGINT64>(unit.length)) !=
            static_cast<LONGINT64>(unit.length))
        return std::nullopt;
    return bytes;
}

QStringList ChmArchive::files() const {
    QStringList paths;
    chm_enumerate(
        file_, CHM_ENUMERATE_NORMAL | CHM_ENUMERATE_FILES,
        [](chmFile*, chmUnitInfo* unit, void* context) {
            QString path = QString::fromUtf8(unit->path);
            if (!path.startsWith("/#") && !path.startsWith("/$") && !path.startsWith("/_#_"))
                static_cast<QStringList*>(context)->append(path);
            return CHM_ENUMERATOR_CONTINUE;
        },
        &paths);
    return paths;
}

QString ChmArchive::firstEndingIn(const QString& suffix) const {
    for (const QString& path : files())
        if (path.endsWith(suffix, Qt::CaseInsensitive))
            return path;
    return {};
}

} // namespace nv
