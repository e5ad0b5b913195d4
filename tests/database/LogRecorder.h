// SPDX-License-Identifier: MIT
#pragma once

// Records what the library writes to the message log, and fails a test on the Qt warnings a
// connection removed while still in use would raise.
#include <PrintMessage.h>

#include <QMutex>
#include <QStringList>

namespace LogRecorder {
inline QMutex &mutex()
{
    static QMutex m;
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
    QMutexLocker lock(&mutex());
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
        QMutexLocker lock(&mutex());
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
    QMutexLocker lock(&mutex());
    QString t = text();
    text().clear();
    return t;
}
inline QStringList takeBadWarnings()
{
    QMutexLocker lock(&mutex());
    QStringList w = badWarnings();
    badWarnings().clear();
    return w;
}
} // namespace LogRecorder
