#pragma once

#include <QLocalServer>
#include <QLockFile>
#include <QObject>
#include <QString>
#include <memory>

namespace nv {

// One running program per settings file: two would undo each other's edits of the list. A lock
// file beside the settings file decides, and holds across users and after a crash (a lock whose
// process has gone is taken over); a local socket lets a later start ask the first to come
// forward.
class SingleInstance : public QObject {
    Q_OBJECT
public:
    // settingsFile is a native path; "" guards nothing.
    explicit SingleInstance(const QString& settingsFile);
    ~SingleInstance() override;

    // False when another program runs on the same settings file. A folder where no lock can be
    // made cannot take the settings either, so there this start goes on.
    bool first() const { return first_; }
    // From a later start: asks the first program to bring its window forward; false when it
    // could not be reached.
    bool askFirstToComeForward();

signals:
    // In the first program: a later start asked for its window.
    void comeForward();

private:
    std::unique_ptr<QLockFile> lock_;
    QLocalServer server_;
    QString name_;
    bool first_ = true;
};

} // namespace nv
