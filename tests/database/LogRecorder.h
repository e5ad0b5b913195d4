// SPDX-License-Identifier: MIT
#pragma once

// Records what the library writes to the message log, and fails a test on the Qt warnings a
// connection removed while still in use would raise.
#include <PrintMessage.h>

#include <QStringList>

#include <mutex>

namespace LogRecorder {
// A standard mutex: ThreadSanitizer follows it, where it cannot follow Qt 5's QMutex.
inline std::mutex &mutex()
{
    static std::mutex m;
    return m;
}
inline QString &text()
{
    static QString t;
    return t;
}
inline QStringList &badWarnings()
{
    static QStringList w;
    return w;
}
inline void record(CString message)
{
    std::lock_guard<std::mutex> lock(mutex());
    text() += message.text;
}
inline QtMessageHandler &previous()
{
    static QtMessageHandler h = nullptr;
    return h;
}
inline void onQtMessage(QtMsgType type, const QMessageLogContext &context, const QString &msg)
{
    if (msg.contains(QLatin1String("still in use")) ||
        msg.contains(QLatin1String("QSqlDatabasePrivate::removeDatabase"))) {
        std::lock_guard<std::mutex> lock(mutex());
        badWarnings() << msg;
    }
    if (previous())
        previous()(type, context, msg);
}
/// Starts recording; call once in initTestCase().
inline void install()
{
    SetPrintMessageFunction(&record);
    previous() = qInstallMessageHandler(&onQtMessage);
}
/// The log so far, emptied.
inline QString take()
{
    std::lock_guard<std::mutex> lock(mutex());
    QString t = text();
    text().clear();
    return t;
}
inline QStringList takeBadWarnings()
{
    std::lock_guard<std::mutex> lock(mutex());
    QStringList w = badWarnings();
    badWarnings().clear();
    return w;
}
} // namespace LogRecorder
