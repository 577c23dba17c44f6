#include "startup/qt/SingleInstance.h"

#include "platform/CaseFold.h"

#include <QCryptographicHash>
#include <QFileInfo>
#include <QLocalSocket>

namespace nv {

namespace {

constexpr int kConnectWait = 2000; // ms

// One name per settings file, in the letters the user's file system does not tell apart.
QString serverNameOf(const QString& settingsFile) {
    const QByteArray key = QByteArray::fromStdString(upperCase(settingsFile.toStdString()));
    return "norvale-backup-" +
           QString::fromLatin1(
               QCryptographicHash::hash(key, QCryptographicHash::Sha1).toHex().left(20));
}

} // namespace

SingleInstance::SingleInstance(const QString& settingsFile) {
    if (settingsFile.isEmpty())
        return;
    const QFileInfo settings(settingsFile);
    lock_ =
        std::make_unique<QLockFile>(settings.absolutePath() + "/." + settings.fileName() + ".open");
    // Held as long as the program runs, however long that is.
    lock_->setStaleLockTime(0);
    name_ = serverNameOf(settingsFile);
    if (!lock_->tryLock(0)) {
        first_ = lock_->error() != QLockFile::LockFailedError;
        return;
    }
    // A socket left by a program that crashed is in the way of a new one.
    QLocalServer::removeServer(name_);
    if (server_.listen(name_))
        connect(&server_, &QLocalServer::newConnection, this, [this] {
            // A connection is the whole request.
            while (QLocalSocket* later = server_.nextPendingConnection()) {
                later->abort();
                later->deleteLater();
                emit comeForward();
            }
        });
}

SingleInstance::~SingleInstance() = default;

bool SingleInstance::askFirstToComeForward() {
    if (first_ || name_.isEmpty())
        return false;
    QLocalSocket socket;
    socket.connectToServer(name_);
    return socket.waitForConnected(kConnectWait);
}

} // namespace nv
