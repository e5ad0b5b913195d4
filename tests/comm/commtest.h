// SPDX-License-Identifier: MIT
#pragma once

// Shared pieces of the communication tests: capturing log lines, bounded polling, the socat
// pseudo-terminal pair, the helper peer and the network-namespace runner.
#include <Vantor.h>

#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

#include <functional>

/// Collects every PrintMessage line while it lives.
class MessageCapture
{
public:
    MessageCapture()
    {
        lines().clear();
        ExternPrintMessageFlag = 1;
        SetPrintMessageFunction(&MessageCapture::collect);
    }
    ~MessageCapture() { SetPrintMessageFunction(nullptr); }
    static QStringList &lines()
    {
        static QStringList all;
        return all;
    }

private:
    static void collect(CString line) { lines() << line.text; }
};

/// Polls `done` until it holds or `ms` have passed; returns its last answer.
inline bool pollUntil(const std::function<bool()> &done, int ms)
{
    QElapsedTimer timer;
    timer.start();
    while (!done()) {
        if (timer.hasExpired(ms))
            return done();
        QThread::msleep(2);
    }
    return true;
}

/// Waits until `device` holds at least `count` unread bytes, at most `ms` ms.
inline bool waitForBytes(QIODevice *device, qint64 count, int ms)
{
    return pollUntil(
        [&] { return device->bytesAvailable() >= count || (device->waitForReadyRead(5), false); },
        ms);
}

/// Stops a process the test started, by its PID, with a bounded wait.
inline void stopProcess(QProcess &process)
{
    if (process.state() == QProcess::NotRunning)
        return;
    process.terminate();
    if (!process.waitForFinished(3000)) {
        process.kill();
        process.waitForFinished(3000);
    }
}

/// A linked pseudo-terminal pair from socat: `near` for the library, `far` for the test.
class SocatPair
{
public:
    bool start()
    {
        if (!dir.isValid())
            return false;
        near = dir.filePath(QStringLiteral("ttyNear"));
        far = dir.filePath(QStringLiteral("ttyFar"));
        process.start(QStringLiteral("socat"),
                      {QStringLiteral("pty,raw,echo=0,link=") + near,
                       QStringLiteral("pty,raw,echo=0,link=") + far});
        if (!process.waitForStarted(5000))
            return false;
        return pollUntil([this] { return QFileInfo::exists(near) && QFileInfo::exists(far); },
                         5000);
    }
    ~SocatPair() { stopProcess(process); }

    QTemporaryDir dir;
    QProcess process;
    QString near;
    QString far;
};

/// Starts the helper peer in `mode` and reads its first output line (bounded).
inline QByteArray startPeer(QProcess &process, const QStringList &args)
{
    process.start(QStringLiteral(COMMPEER_PATH), args);
    if (!process.waitForStarted(5000))
        return QByteArray();
    QElapsedTimer timer;
    timer.start();
    while (!process.canReadLine() && !timer.hasExpired(10000))
        process.waitForReadyRead(100);
    return process.readLine().trimmed();
}

/// Why no network namespace can be made here, or an empty text when one can.
inline QString namespaceUnavailable()
{
    QProcess probe;
    probe.start(QStringLiteral("unshare"),
                {QStringLiteral("-rn"), QStringLiteral("ip"), QStringLiteral("link")});
    if (!probe.waitForStarted(5000))
        return QStringLiteral("unshare (util-linux) is not installed");
    if (!probe.waitForFinished(10000) || probe.exitCode() != 0)
        return QStringLiteral("cannot create a network namespace (unshare -rn or ip failed: %1)")
            .arg(QString::fromLocal8Bit(probe.readAllStandardError()).trimmed());
    return QString();
}

/// The shell lines that make a veth pair 10.78.0.1/24 - 10.78.0.2/24 inside the namespace.
inline QString vethSetup()
{
    return QStringLiteral("ip link add vA type veth peer name vB && "
                          "ip addr add 10.78.0.1/24 broadcast + dev vA && "
                          "ip addr add 10.78.0.2/24 broadcast + dev vB && "
                          "ip link set vA up && ip link set vB up && ");
}

/// Runs `setup` and then the helper peer with `args` (under `wrapper`, a command prefix, when
/// given) in a new user and network namespace; returns the peer's output (empty when the run
/// failed or took longer than 20 s).
inline QByteArray runPeerInNamespace(const QString &setup, const QStringList &args,
                                     const QString &wrapper = QString())
{
    QProcess process;
    QStringList command {QStringLiteral("-rn"), QStringLiteral("sh"), QStringLiteral("-c"),
                         setup + QStringLiteral("exec ") + wrapper +
                             QStringLiteral(" \"$0\" \"$@\""),
                         QStringLiteral(COMMPEER_PATH)};
    process.start(QStringLiteral("unshare"), command + args);
    if (!process.waitForStarted(5000))
        return QByteArray();
    if (!process.waitForFinished(20000)) {
        stopProcess(process);
        return QByteArray();
    }
    return process.readAllStandardOutput().trimmed();
}
