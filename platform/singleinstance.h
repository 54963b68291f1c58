// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>

#include <QDeadlineTimer>
#include <QObject>
#include <QString>

#include "platform/localsocket.h"

/// Ensures that only one process uses a folder. A second one asks the first to show its window.
///
/// The first process locks the folder itself and listens on a socket in it. The kernel releases the
/// lock when the process ends, however it ends. Neither needs a message bus, and processes with
/// different folders do not meet. A folder that does not exist or cannot be locked is not an error:
/// every process is the first one then.
class SingleInstance : public QObject
{
    Q_OBJECT

public:
    enum class Result {
        First,      ///< no other process uses the folder
        Answered,   ///< another one does, and shows its window
        Unanswered, ///< another one does, and does not respond
    };

    explicit SingleInstance(QString path, QObject *parent = nullptr);
    /// Unlocks the folder.
    ~SingleInstance() override;

    /// Locks the folder, or else asks the process that has locked it to show its window. Waits up
    /// to `patience` for the answer, or for that process to end. `activationToken` lets the window
    /// of that process become active on Wayland; it may be empty.
    Result start(const QByteArray &activationToken,
                 std::chrono::milliseconds patience = std::chrono::seconds(5));

    /// Stops answering. For a process that is about to end: another one then waits for the end.
    void stopListening();

signals:
    /// Another process was started.
    void startedAgain(const QString &activationToken);

private:
    bool lock();
    bool ask(const QByteArray &activationToken, const QDeadlineTimer &deadline) const;
    void listen();
    void answer(LocalSocket *other);
    QByteArray socketPath() const;

    QString folder;
    LocalServer server;
    int descriptor = -1; // of the folder
    bool isLocked = false;
};
