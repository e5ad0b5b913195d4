// SPDX-License-Identifier: MIT
#pragma once

// What the IPC tests share: their own temporary folder for System V keys, removal of segments
// left by earlier runs, and the peer process.

#include <QDeadlineTimer>
#include <QDir>
#include <QProcess>
#include <QSharedMemory>
#include <QTemporaryDir>

#include <memory>

namespace IpcTest {

/// Segment keys are files in the temporary folder: a folder of our own keeps a run apart, for
/// the test and the peers it starts.
inline bool useOwnTempDir(QTemporaryDir &dir)
{
    return dir.isValid() && qputenv("TMPDIR", QFile::encodeName(dir.path()));
}

/// A segment whose owner died goes with the last handle: attaching and detaching removes it.
inline void removeSegment(const QString &key)
{
    QSharedMemory stale(key);
    if (stale.attach())
        stale.detach();
}

/// The next line of the peer's output, or what it printed before it ended.
inline QByteArray readLine(QProcess &peer, int ms = 30000)
{
    const QDeadlineTimer limit(ms);
    while (!peer.canReadLine() && peer.state() == QProcess::Running && !limit.hasExpired())
        peer.waitForReadyRead(100);
    return (peer.canReadLine() ? peer.readLine() : peer.readAll()).trimmed();
}

inline std::unique_ptr<QProcess> startPeer(const QStringList &args)
{
    auto peer = std::make_unique<QProcess>();
    peer->setProcessChannelMode(QProcess::ForwardedErrorChannel);
    peer->start(QStringLiteral(IPCPEER_PATH), args);
    peer->waitForStarted(10000);
    return peer;
}

/// The peer's last words once it has ended (killed after two minutes).
inline QByteArray finish(QProcess &peer)
{
    if (!peer.waitForFinished(120000)) {
        peer.kill();
        peer.waitForFinished();
    }
    return peer.readAllStandardOutput().trimmed();
}

} // namespace IpcTest
