#pragma once

#include "startup/SingleStart.h"

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
class SingleInstance : public QObject, public SingleStart {
    Q_OBJECT
public:
    // settingsFile is a native path; "" guards nothing.
    explicit SingleInstance(const QString& settingsFile);
    ~SingleInstance() override;

    // A folder where no lock can be made cannot take the settings either, so there this start
    // goes on.
    bool first() const override { return first_; }
    bool askFirstToComeForward() override;

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
