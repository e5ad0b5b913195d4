// SPDX-License-Identifier: MIT
#include "CTimeEx.h"

#include "timezonescope.h"

#include <QtTest>

#include <climits>
#include <ctime>

namespace {

// "y m d h mi s", negative and out-of-range values allowed.
TimeStruct record(const QString &fields)
{
    const QStringList f = fields.split(QLatin1Char(' '));
    auto at = [&](int i) { return std::int8_t(f.value(i).toInt()); };
    return TimeStruct {f.value(0).toInt(), at(1), 0, at(2), 0, at(3), at(4), at(5)};
}

// "yyyy-mm-dd hh:mm:ss dN wN": the six fields, day of week and week.
QString describe(const TimeStruct &ts)
{
    return QString::asprintf("%04d-%02d-%02d %02d:%02d:%02d d%d w%d", ts.year, ts.month, ts.day,
                             ts.hour, ts.minute, ts.second, ts.dayOfWeek, ts.week);
}

// "y m d h mi s.ms/dow" of a SYSTEMTIME.
QString describe(const SYSTEMTIME &st)
{
    return QString::asprintf("%d %d %d %d %d %d.%03d/%d", st.wYear, st.wMonth, st.wDay, st.wHour,
                             st.wMinute, st.wSecond, st.wMilliseconds, st.wDayOfWeek);
}

} // namespace

class tst_TimeEx : public QObject
{
    Q_OBJECT

private slots:
    // Each row's result is the normalised record, its day of week (0 = Monday), week of the month
    // and the days of its month.
    void arithmetic_data()
    {
        QTest::addColumn<QString>("fields");
        QTest::addColumn<int>("kind"); // -1: RemakeTime alone, else GetBeforeTime's kind
        QTest::addColumn<QString>("expected");
        auto row = [](const char *name, const char *fields, int kind, const char *expected) {
            QTest::newRow(name) << QString(fields) << kind << QString(expected);
        };
        // Weeks start on Monday; week 1 ends on the first Sunday.
        row("sunday the 1st", "2026 3 1 0 0 0", -1, "2026-03-01 00:00:00 d6 w1 m31");
        row("monday the 2nd", "2026 3 2 0 0 0", -1, "2026-03-02 00:00:00 d0 w2 m31");
        row("31st, 6th week", "2026 3 31 0 0 0", -1, "2026-03-31 00:00:00 d1 w6 m31");
        // February by the 400/100/4 rule.
        row("day 0, 1900 not leap", "1900 3 0 0 0 0", -1, "1900-02-28 00:00:00 d2 w5 m28");
        row("day 0, 2000 leap", "2000 3 0 0 0 0", -1, "2000-02-29 00:00:00 d1 w5 m29");
        row("february 2024", "2024 2 29 0 0 0", -1, "2024-02-29 00:00:00 d3 w5 m29");
        // One carry or borrow per field only: 125 seconds and day 70 stay out of range.
        row("125 seconds carry once", "2026 6 8 10 20 125", -1, "2026-06-08 10:21:65 d0 w2 m30");
        row("day 70 carries once", "2026 1 70 0 0 0", -1, "2026-02-39 00:00:00 d-1 w7 m28");
        row("carry through all", "2023 12 31 23 59 60", -1, "2024-01-01 00:00:00 d0 w1 m31");
        row("borrow through all", "2024 1 1 0 0 -1", -1, "2023-12-31 23:59:59 d6 w5 m31");
        row("month 13", "2025 13 15 0 0 0", -1, "2026-01-15 00:00:00 d3 w3 m31");
        row("year back from a leap day", "2024 2 29 0 0 0", 0, "2023-03-01 00:00:00 d2 w1 m31");
        row("month back over a year", "2026 1 15 0 0 0", 1, "2025-12-15 00:00:00 d0 w3 m31");
        row("31 march minus a month", "2026 3 31 0 0 0", 1, "2026-03-03 00:00:00 d1 w2 m31");
        row("week back", "2026 3 3 0 0 0", 2, "2026-02-24 00:00:00 d1 w5 m28");
        row("day back over a month", "2026 3 1 0 0 0", 3, "2026-02-28 00:00:00 d5 w5 m28");
        row("other kind", "2026 6 7 0 0 0", 4, "2026-06-07 00:00:00 d6 w1 m30");
    }

    void arithmetic()
    {
        QFETCH(QString, fields);
        QFETCH(int, kind);
        QFETCH(QString, expected);
        TimeStruct ts = record(fields);
        const int week = kind < 0 ? m_calc.RemakeTime(&ts) : m_calc.GetBeforeTime(ts, kind);
        QCOMPARE(describe(ts) + QStringLiteral(" m%1").arg(m_calc.GetLimitMonth(ts.year, ts.month)),
                 expected);
        QCOMPARE((QList<int> {week, m_calc.GetWeekDay(ts.year, ts.month, ts.day),
                              m_calc.GetWeek(ts.year, ts.month, ts.day)}),
                 (QList<int> {ts.week, ts.dayOfWeek, ts.week}));
    }

    // Each field outweighs all those after it.
    void compareTime_data()
    {
        QTest::addColumn<QString>("later");
        const char *names[] = {"year", "month", "day", "hour", "minute", "second"};
        for (int field = 0; field < 6; ++field) {
            QStringList later = QString("2026 6 8 10 20 30").split(' ');
            for (int i = field; i < 6; ++i)
                later[i] = QString::number(later[i].toInt() + (i == field ? 1 : -1));
            QTest::newRow(names[field]) << later.join(' ');
        }
    }

    void compareTime()
    {
        QFETCH(QString, later);
        TimeStruct a = record(later), b = record("2026 6 8 10 20 30"), c = a;
        a.week = 1; // week and day of week are not compared
        c.dayOfWeek = 5;
        QCOMPARE(m_calc.CompareTime(&a, &b), 1);
        QCOMPARE(m_calc.CompareTime(&b, &a), -1);
        QCOMPARE(m_calc.CompareTime(&a, &c), 0);
    }

    // Record conversions; the texts of now; values that have no time fall back to now, or to an
    // empty or zero result.
    void conversionsAndNow()
    {
        tm parts = {};
        QVERIFY(strptime("2026-06-14 23:05:09", "%Y-%m-%d %H:%M:%S", &parts));
        // The week is computed for exactly 1 only: then it is the result, else the day of week.
        TimeStruct ts = {0, 0, 42};
        QCOMPARE(m_calc.ConvertTimeStruct(&ts, &parts, 2), 6);
        QCOMPARE(describe(ts), QStringLiteral("2026-06-14 23:05:09 d6 w42"));
        QCOMPARE(m_calc.ConvertTimeStruct(&ts, &parts, 1), 2);
        QDateTime dt(QDate(2026, 6, 15), QTime(0, 0, 1, 999));
        QCOMPARE(m_calc.ConvertTimeStruct(&ts, dt, 0), 0);
        QCOMPARE(describe(ts), QStringLiteral("2026-06-15 00:00:01 d0 w2"));
        // GetCurrTime computes the week for any nonzero flag.
        const int week = m_calc.GetCurrTime(&ts, 2);
        QCOMPARE(week, int(ts.week));
        QCOMPARE(week, m_calc.GetWeek(ts));
        ts = record("2023 11 14 22 13 20");
        QCOMPARE(m_calc.GetTimeString(ts).text, QStringLiteral("2023/11/14 22:13:20"));
        QCOMPARE(m_calc.GetFileTime(ts), 1700000000000LL); // the fields read as UTC

        // Bit 0 puts the date first, bit 1 appends the milliseconds; the widths are fixed.
        const QString formats[] = {"HH:mm:ss", "yyyy/MM/dd HH:mm:ss", "HH:mm:ss.zzz",
                                   "yyyy/MM/dd HH:mm:ss.zzz"};
        for (int flags = 0; flags < 4; ++flags) {
            const QString text = m_calc.GetTimeStringUseFlag(flags).text;
            QCOMPARE(QDateTime::fromString(text, formats[flags]).toString(formats[flags]), text);
        }
        // The log stamp is now, to the millisecond.
        const QDateTime before = QDateTime::currentDateTime();
        const QString stamp = m_calc.GetTimeString().text;
        const QDateTime at = QDateTime::fromString(stamp, "yyyy/MM/dd HH:mm:ss.zzz");
        QVERIFY2(at >= before && at <= QDateTime::currentDateTime(), qPrintable(stamp));

        useTimeZone("Asia/Seoul");
        const qint64 now = m_calc.GetTimeT(1969, 12, 31, 23, 59, 59);
        QVERIFY(now >= before.toSecsSinceEpoch() && now <= time(nullptr));
        // One second before 1970 is -1, the C library's failure value: also now.
        QVERIFY(m_calc.GetTimeT(1970, 1, 1, 8, 59, 59) >= now);
        QCOMPARE(m_calc.GetFileTime(static_cast<long long>(LLONG_MAX)), 0LL);
        SYSTEMTIME st = {1, 2, 3, 4, 5, 6, 7, 8};
        m_calc.GetSystemTime(st, LLONG_MAX, 0, 5);
        QCOMPARE(describe(st), "0 0 0 0 0 0.000/0"); // cleared, and left so
        QVERIFY(m_calc.GetTimeString(-1L).IsEmpty() &&
                m_calc.GetTimeString(0ULL, false).IsEmpty() &&
                m_calc.GetTimeString(0LL, true).IsEmpty());
        QCOMPARE(m_calc.GetTimeString(1005ULL, false).text, "1970/01/01 00:00:01.005");
        // Only 0 means "no time": a value before 1970 is formatted.
        QCOMPARE(m_calc.GetTimeString(-1LL, false).text, "1969/12/31 23:59:59.999");
    }

    void timeT_data()
    {
        QTest::addColumn<QString>("fields"); // the zone, then the local fields
        QTest::addColumn<qint64>("t");
        QTest::newRow("seoul epoch, not negative") << "Asia/Seoul 1970 1 1 9 0 0" << qint64(0);
        QTest::newRow("berlin winter") << "Europe/Berlin 2024 1 15 12 0 0" << qint64(1705316400);
        QTest::newRow("berlin summer") << "Europe/Berlin 2024 7 1 14 0 0" << qint64(1719835200);
    }

    // Local wall-clock fields and time_t in a zone, both ways, through every form.
    void timeT()
    {
        QFETCH(QString, fields);
        QFETCH(qint64, t);
        useTimeZone(fields.section(' ', 0, 0).toLatin1());
        fields = fields.section(' ', 1);
        TimeStruct ts = record(fields);
        SYSTEMTIME st = {0, 0, 7, 0, 0, 0, 0, 321}; // ConvertTimeStruct keeps dow and milliseconds
        m_calc.ConvertTimeStruct(&st, &ts);
        QCOMPARE(describe(st), fields + QStringLiteral(".321/7"));
        QCOMPARE(m_calc.GetTimeT(ts.year, ts.month, ts.day, ts.hour, ts.minute, ts.second), t);
        QCOMPARE(m_calc.GetTimeT(ts), t);
        QCOMPARE(m_calc.GetTimeT(st), t);
        QCOMPARE(m_calc.GetLocalTimeT(t), t);
        QCOMPARE(m_calc.GetTimeString(long(t)), m_calc.GetTimeString(ts));
        QCOMPARE(m_calc.GetTimeString(t * 1000 + 7, true).text,
                 m_calc.GetTimeString(ts).text + ".007");
        // GetFileTime reads the local wall clock as UTC, so it is ahead by the zone's offset.
        QCOMPARE(m_calc.GetFileTime(static_cast<long long>(t)), m_calc.GetFileTime(ts));
        m_calc.GetSystemTime(st, t, 1, 250);
        QCOMPARE(describe(st), fields + QStringLiteral(".250/0"));
        m_calc.GetSystemTime(st, t, 0, 0); // UTC fields, whatever the zone
        QCOMPARE(describe(st),
                 QDateTime::fromSecsSinceEpoch(t, Qt::UTC).toString("yyyy M d H m s") + ".000/0");
    }

    void duration_data()
    {
        QTest::addColumn<int>("seconds");
        QTest::addColumn<int>("flags");
        QTest::addColumn<QString>("text");
        const char *texts[] = {"", "1", "62", "1:02", "3725", "1:125", "62:05", "1:02:05"};
        for (int flags = 0; flags < 8; ++flags) // bit 0: hours, bit 1: minutes, bit 2: seconds
            QTest::addRow("3725 s, flags %d", flags) << 3725 << flags << texts[flags];
        // Exactly 30 rounds down, 31 up.
        QTest::newRow("30 minutes round down") << 1800 << 1 << "0";
        QTest::newRow("31 minutes round up") << 1860 << 1 << "1";
        QTest::newRow("30 seconds round down") << 90 << 2 << "01";
        QTest::newRow("31 seconds round up") << 91 << 2 << "02";
    }

    void duration()
    {
        QFETCH(int, seconds);
        QFETCH(int, flags);
        QFETCH(QString, text);
        QCOMPARE(m_calc.GetTimeString(seconds, flags).text, text);
    }

private:
    CTimeEx m_calc;
};

QTEST_GUILESS_MAIN(tst_TimeEx)
#include "tst_timeex.moc"
