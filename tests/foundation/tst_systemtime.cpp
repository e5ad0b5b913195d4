// SPDX-License-Identifier: MIT
#include "SystemTime.h"

#include "timezonescope.h"

#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>

namespace {

// "yyyy-mm-dd hh:mm:ss.zzz dow" of all eight fields; records are written in field order:
// year, month, day of week, day, hour, minute, second, milliseconds.
QString describe(const SYSTEMTIME &st)
{
    return QString::asprintf("%04d-%02d-%02d %02d:%02d:%02d.%03d %d", st.wYear, st.wMonth, st.wDay,
                             st.wHour, st.wMinute, st.wSecond, st.wMilliseconds, st.wDayOfWeek);
}

// The instant of local (or UTC) fields, in milliseconds.
qint64 instant(SYSTEMTIME st, bool local = true)
{
    long long ms = 42;
    return SystemTimeToFileTime(&st, &ms, local) ? ms : -42;
}

} // namespace

class tst_SystemTime : public QObject
{
    Q_OBJECT

private slots:
    void conversions_data();
    void conversions();
    void invalidAndSkipped();
    void nowAndFileTime();
    void setLocalTimeRefused();
};

void tst_SystemTime::conversions_data()
{
    QTest::addColumn<QByteArray>("zone");
    QTest::addColumn<bool>("local");
    QTest::addColumn<qint64>("ms");
    QTest::addColumn<QString>("fields");
    auto row = [](const char *name, const char *zone, bool local, qint64 ms, const char *fields) {
        QTest::newRow(name) << QByteArray(zone) << local << ms << QString::fromLatin1(fields);
    };
    // A FILETIME is milliseconds since 1970; the day of week counts 1 = Monday ... 7 = Sunday.
    row("epoch utc", "Asia/Seoul", false, 0, "1970-01-01 00:00:00.000 4");
    row("before the epoch", "UTC", false, -1, "1969-12-31 23:59:59.999 3");
    row("high word in use", "UTC", false, 1700000000123, "2023-11-14 22:13:20.123 2");
    row("next day in seoul", "Asia/Seoul", true, 1700000000123, "2023-11-15 07:13:20.123 3");
    row("sunday is 7", "UTC", true, 1780827630456, "2026-06-07 10:20:30.456 7");
    row("berlin winter", "Europe/Berlin", true, 1705316400000, "2024-01-15 12:00:00.000 1");
    row("berlin summer", "Europe/Berlin", true, 1719835200000, "2024-07-01 14:00:00.000 1");
    row("leap day 2000", "UTC", false, 951782400000, "2000-02-29 00:00:00.000 2");
    row("past 32-bit time_t", "UTC", false, 2147483648000, "2038-01-19 03:14:08.000 2");
}

// Both directions: the instant to fields, and the fields (with a wrong day of week, which is
// ignored) back to the same instant; GetQDateTime gives the fields without milliseconds.
void tst_SystemTime::conversions()
{
    QFETCH(QByteArray, zone);
    QFETCH(bool, local);
    QFETCH(qint64, ms);
    QFETCH(QString, fields);
    useTimeZone(zone);
    FILETIME ft = {DWORD(quint64(ms) & 0xffffffffu), DWORD(quint64(ms) >> 32)};
    SYSTEMTIME st = {1, 1, 1, 1, 1, 1, 1, 1};
    QCOMPARE(FileTimeToSystemTime(&ft, &st, local), TRUE);
    QCOMPARE(describe(st), fields);
    long long plain = ms;
    QCOMPARE(FileTimeToSystemTime(&plain, &st, local), TRUE);
    QCOMPARE(describe(st), fields);
    st.wDayOfWeek = 9;
    QCOMPARE(instant(st, local), ms);
    const QDateTime dt = GetQDateTime(ms, local);
    QCOMPARE(dt.timeSpec(), local ? Qt::LocalTime : Qt::UTC);
    QCOMPARE(dt.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss.zzz")), fields.left(20) + "000");
}

void tst_SystemTime::invalidAndSkipped()
{
    useTimeZone("Europe/Berlin");
    // An impossible date or time does not roll over into a neighbouring one.
    const qint64 invalid = QDateTime().toMSecsSinceEpoch();
    QCOMPARE(instant(SYSTEMTIME {2023, 13, 0, 1, 0, 0, 0, 0}, false), invalid);
    QCOMPARE(instant(SYSTEMTIME {2023, 12, 0, 31, 24, 0, 0, 0}, false), invalid);
    FILETIME ft;
    QCOMPARE(SystemTimeToFileTime(nullptr, &ft, true), FALSE);
    // 31 March 2024, 02:30 does not exist in Berlin: it converts as QDateTime converts it, and
    // the real time across the gap is one second.
    QCOMPARE(instant(SYSTEMTIME {2024, 3, 0, 31, 2, 30, 0, 0}),
             QDateTime(QDate(2024, 3, 31), QTime(2, 30)).toMSecsSinceEpoch());
    QCOMPARE(instant(SYSTEMTIME {2024, 3, 0, 31, 3, 0, 0, 0}) -
                 instant(SYSTEMTIME {2024, 3, 0, 31, 1, 59, 59, 0}),
             qint64(1000));
}

void tst_SystemTime::nowAndFileTime()
{
    useTimeZone("Asia/Seoul");
    const qint64 before = QDateTime::currentMSecsSinceEpoch();
    const qint64 ms = GetMSecsSinceEpoch();
    const QDateTime local = GetQDateTime(true);
    const QDateTime utc = GetQDateTime(false);
    const qint64 after = QDateTime::currentMSecsSinceEpoch();
    QVERIFY(ms >= before && ms <= after);
    QCOMPARE(local.timeSpec(), Qt::LocalTime);
    QVERIFY(local.toMSecsSinceEpoch() >= before && local.toMSecsSinceEpoch() <= after);
    // Only the UTC form loses its milliseconds.
    QCOMPARE(utc.timeSpec(), Qt::UTC);
    QCOMPARE(utc.time().msec(), 0);
    QVERIFY(utc.toMSecsSinceEpoch() > before - 1000 && utc.toMSecsSinceEpoch() <= after);

    QTemporaryDir dir;
    QFile file(dir.filePath(QStringLiteral("stamped.dat")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    const QDateTime stamp(QDate(2021, 5, 6), QTime(7, 8, 9, 250), Qt::UTC);
    QVERIFY(file.setFileTime(stamp, QFileDevice::FileModificationTime));
    file.close();
    QCOMPARE(GetFileTime(CString(file.fileName())), stamp.toMSecsSinceEpoch());
    QCOMPARE(GetFileTime(CString(dir.filePath(QStringLiteral("missing")))),
             QDateTime().toMSecsSinceEpoch());
}

// Never with the real clock: only inside a user namespace of our own, where it is out of reach.
void tst_SystemTime::setLocalTimeRefused()
{
    QCOMPARE(SetLocalTimeEx(nullptr), FALSE);
    const QString unshare = QStandardPaths::findExecutable(QStringLiteral("unshare"));
    if (unshare.isEmpty())
        QSKIP("unshare is not installed: the refusal is tested only inside a user namespace");
    QProcess helper;
    helper.start(unshare, {QStringLiteral("-r"), QStringLiteral(SYSTEMTIME_CLOCK_HELPER)});
    QVERIFY(helper.waitForFinished(30000));
    if (helper.exitCode() == 1)
        QSKIP(qPrintable(QStringLiteral("no user namespace available: ") +
                         QString::fromLocal8Bit(helper.readAllStandardError())));
    QCOMPARE(helper.exitCode(), 0);
}

QTEST_GUILESS_MAIN(tst_SystemTime)
#include "tst_systemtime.moc"
