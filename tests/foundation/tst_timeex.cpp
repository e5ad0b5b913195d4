#include "CTimeEx.h"

#include "timezonescope.h"

#include <QRegularExpression>
#include <QtTest>

#include <climits>

namespace {

// "y m d h mi s", negative and out-of-range values allowed.
TimeStruct record(const char *fields)
{
    const QStringList f = QString::fromLatin1(fields).split(QLatin1Char(' '));
    TimeStruct ts;
    ts.year = f.value(0).toInt();
    ts.month = std::int8_t(f.value(1).toInt());
    ts.day = std::int8_t(f.value(2).toInt());
    ts.hour = std::int8_t(f.value(3).toInt());
    ts.minute = std::int8_t(f.value(4).toInt());
    ts.second = std::int8_t(f.value(5).toInt());
    return ts;
}

// "yyyy-mm-dd hh:mm:ss dN wN": the six fields, day of week and week.
QString describe(const TimeStruct &ts)
{
    return QString::asprintf("%04d-%02d-%02d %02d:%02d:%02d d%d w%d", ts.year, ts.month, ts.day,
                             ts.hour, ts.minute, ts.second, ts.dayOfWeek, ts.week);
}

} // namespace

class tst_TimeEx : public QObject
{
    Q_OBJECT

private slots:
    void calendar_data();
    void calendar();
    void arithmetic_data();
    void arithmetic();
    void compareTime_data();
    void compareTime();
    void recordConversions();
    void timeT_data();
    void timeT();
    void unrepresentable();
    void nowStrings();
    void duration_data();
    void duration();

private:
    CTimeEx m_calc;
};

void tst_TimeEx::calendar_data()
{
    QTest::addColumn<QDate>("date");
    QTest::addColumn<int>("weekDay");
    QTest::addColumn<int>("week");
    QTest::addColumn<int>("monthDays");

    // Weeks start on Monday; week 1 ends on the first Sunday. February by the 400/100/4 rule.
    QTest::newRow("monday the 1st") << QDate(2026, 6, 1) << 0 << 1 << 30;
    QTest::newRow("first sunday") << QDate(2026, 6, 7) << 6 << 1 << 30;
    QTest::newRow("second monday") << QDate(2026, 6, 8) << 0 << 2 << 30;
    QTest::newRow("sunday the 1st") << QDate(2026, 3, 1) << 6 << 1 << 31;
    QTest::newRow("monday the 2nd") << QDate(2026, 3, 2) << 0 << 2 << 31;
    QTest::newRow("31st, 6th week") << QDate(2026, 3, 31) << 1 << 6 << 31;
    QTest::newRow("thursday 1970-01-01") << QDate(1970, 1, 1) << 3 << 1 << 31;
    QTest::newRow("february 2000") << QDate(2000, 2, 29) << 1 << 5 << 29;
    QTest::newRow("february 1900") << QDate(1900, 2, 28) << 2 << 5 << 28;
    QTest::newRow("february 2100") << QDate(2100, 2, 1) << 0 << 1 << 28;
    QTest::newRow("february 2024") << QDate(2024, 2, 29) << 3 << 5 << 29;
    QTest::newRow("february 2023") << QDate(2023, 2, 28) << 1 << 5 << 28;
    QTest::newRow("november") << QDate(2023, 11, 30) << 3 << 5 << 30;
    QTest::newRow("december") << QDate(2023, 12, 31) << 6 << 5 << 31;
}

void tst_TimeEx::calendar()
{
    QFETCH(QDate, date);
    QFETCH(int, weekDay);
    QFETCH(int, week);
    QFETCH(int, monthDays);

    QCOMPARE(m_calc.GetWeekDay(date.year(), date.month(), date.day()), weekDay);
    QCOMPARE(m_calc.GetWeek(date.year(), date.month(), date.day()), week);
    QCOMPARE(m_calc.GetLimitMonth(date.year(), date.month()), monthDays);
}

void tst_TimeEx::arithmetic_data()
{
    QTest::addColumn<QString>("fields");
    QTest::addColumn<int>("kind"); // -1: RemakeTime alone, else GetBeforeTime's kind
    QTest::addColumn<QString>("expected");

    auto row = [](const char *name, const char *fields, int kind, const char *expected) {
        QTest::newRow(name) << QString::fromLatin1(fields) << kind << QString::fromLatin1(expected);
    };
    row("second 60", "2026 6 8 10 20 60", -1, "2026-06-08 10:21:00 d0 w2");
    row("second -5", "2026 6 8 10 20 -5", -1, "2026-06-08 10:19:55 d0 w2");
    row("125 seconds carry once", "2026 6 8 10 20 125", -1, "2026-06-08 10:21:65 d0 w2");
    row("day 70 carries once", "2026 1 70 0 0 0", -1, "2026-02-39 00:00:00 d-1 w7");
    row("carry through every field", "2023 12 31 23 59 60", -1, "2024-01-01 00:00:00 d0 w1");
    row("borrow through every field", "2024 1 1 0 0 -1", -1, "2023-12-31 23:59:59 d6 w5");
    row("day 0, 1900 not leap", "1900 3 0 0 0 0", -1, "1900-02-28 00:00:00 d2 w5");
    row("day 0, 2000 leap", "2000 3 0 0 0 0", -1, "2000-02-29 00:00:00 d1 w5");
    row("29 february 1900", "1900 2 29 0 0 0", -1, "1900-03-01 00:00:00 d3 w1");
    row("month 13", "2025 13 15 0 0 0", -1, "2026-01-15 00:00:00 d3 w3");
    row("year back", "2026 3 1 12 0 0", 0, "2025-03-01 12:00:00 d5 w1");
    row("year back from a leap day", "2024 2 29 0 0 0", 0, "2023-03-01 00:00:00 d2 w1");
    row("month back over a year", "2026 1 15 0 0 0", 1, "2025-12-15 00:00:00 d0 w3");
    row("31 march minus a month", "2026 3 31 0 0 0", 1, "2026-03-03 00:00:00 d1 w2");
    row("week back", "2026 3 3 0 0 0", 2, "2026-02-24 00:00:00 d1 w5");
    row("day back over a month", "2026 3 1 0 0 0", 3, "2026-02-28 00:00:00 d5 w5");
    row("day back over a year", "2026 1 1 8 0 0", 3, "2025-12-31 08:00:00 d2 w5");
    row("other kind", "2026 6 7 0 0 0", 4, "2026-06-07 00:00:00 d6 w1");
}

void tst_TimeEx::arithmetic()
{
    QFETCH(QString, fields);
    QFETCH(int, kind);
    QFETCH(QString, expected);

    TimeStruct ts = record(fields.toLatin1().constData());
    const int week = kind < 0 ? m_calc.RemakeTime(&ts) : m_calc.GetBeforeTime(ts, kind);
    QCOMPARE(describe(ts), expected);
    QCOMPARE(week, int(ts.week));
}

void tst_TimeEx::compareTime_data()
{
    QTest::addColumn<QString>("a");
    QTest::addColumn<QString>("b");
    QTest::addColumn<int>("result");

    QTest::newRow("equal") << "2026 6 8 10 20 30"
                           << "2026 6 8 10 20 30" << 0;
    const char *const later[] = {"2027 6 8 10 20 30", "2026 7 8 10 20 30", "2026 6 9 10 20 30",
                                 "2026 6 8 11 20 30", "2026 6 8 10 21 30", "2026 6 8 10 20 31"};
    for (const char *l : later) {
        QTest::addRow("later: %s", l) << QString::fromLatin1(l) << "2026 6 8 10 20 30" << 1;
        QTest::addRow("earlier: %s", l) << "2026 6 8 10 20 30" << QString::fromLatin1(l) << -1;
    }
    QTest::newRow("year outweighs the rest") << "2027 1 1 0 0 0"
                                             << "2026 12 31 23 59 59" << 1;
}

void tst_TimeEx::compareTime()
{
    QFETCH(QString, a);
    QFETCH(QString, b);
    QFETCH(int, result);

    // Week and day of week differ and are not compared.
    TimeStruct ta = record(a.toLatin1().constData());
    TimeStruct tb = record(b.toLatin1().constData());
    ta.week = 1;
    tb.dayOfWeek = 5;
    QCOMPARE(m_calc.CompareTime(&ta, &tb), result);
}

void tst_TimeEx::recordConversions()
{
    tm parts = {};
    parts.tm_year = 126;
    parts.tm_mon = 5;
    parts.tm_mday = 14;
    parts.tm_hour = 23;
    parts.tm_min = 5;
    parts.tm_sec = 9;

    // The week is computed for exactly 1 only: then it is the result, else the day of week.
    TimeStruct ts;
    ts.week = 42;
    QCOMPARE(m_calc.ConvertTimeStruct(&ts, &parts, 2), 6);
    QCOMPARE(describe(ts), QStringLiteral("2026-06-14 23:05:09 d6 w42"));
    QCOMPARE(m_calc.ConvertTimeStruct(&ts, &parts, 1), 2);
    QDateTime dt(QDate(2026, 6, 15), QTime(0, 0, 1, 999));
    ts.week = 42;
    QCOMPARE(m_calc.ConvertTimeStruct(&ts, dt, 0), 0);
    QCOMPARE(describe(ts), QStringLiteral("2026-06-15 00:00:01 d0 w42"));

    // GetCurrTime computes the week for any nonzero flag.
    const int week = m_calc.GetCurrTime(&ts, 2);
    QCOMPARE(week, int(ts.week));
    QCOMPARE(int(ts.week), m_calc.GetWeek(ts));

    // Into a SYSTEMTIME, day of week and milliseconds are kept; as UTC milliseconds.
    SYSTEMTIME st = {};
    st.wDayOfWeek = 7;
    st.wMilliseconds = 321;
    ts = record("2023 11 14 22 13 20");
    m_calc.ConvertTimeStruct(&st, &ts);
    QCOMPARE(m_calc.GetTimeString(ts).text, QStringLiteral("2023/11/14 22:13:20"));
    QCOMPARE(QString::asprintf("%d-%d-%d %d:%d:%d %d %d", st.wYear, st.wMonth, st.wDay, st.wHour,
                               st.wMinute, st.wSecond, st.wDayOfWeek, st.wMilliseconds),
             QStringLiteral("2023-11-14 22:13:20 7 321"));
    QCOMPARE(m_calc.GetFileTime(ts), 1700000000000LL);
}

void tst_TimeEx::timeT_data()
{
    QTest::addColumn<QByteArray>("zone");
    QTest::addColumn<QString>("fields");
    QTest::addColumn<qint64>("t");

    QTest::newRow("seoul epoch is not negative")
        << QByteArray("Asia/Seoul") << "1970 1 1 9 0 0" << qint64(0);
    QTest::newRow("utc") << QByteArray("UTC") << "2023 11 14 22 13 20" << qint64(1700000000);
    QTest::newRow("berlin winter")
        << QByteArray("Europe/Berlin") << "2024 1 15 12 0 0" << qint64(1705316400);
    QTest::newRow("berlin summer")
        << QByteArray("Europe/Berlin") << "2024 7 1 14 0 0" << qint64(1719835200);
}

// Local wall-clock fields and time_t in a zone, both ways, through every form.
void tst_TimeEx::timeT()
{
    QFETCH(QByteArray, zone);
    QFETCH(QString, fields);
    QFETCH(qint64, t);
    useTimeZone(zone);

    TimeStruct ts = record(fields.toLatin1().constData());
    SYSTEMTIME st = {};
    m_calc.ConvertTimeStruct(&st, &ts);
    QCOMPARE(m_calc.GetTimeT(ts.year, ts.month, ts.day, ts.hour, ts.minute, ts.second), t);
    QCOMPARE(m_calc.GetTimeT(ts), t);
    QCOMPARE(m_calc.GetTimeT(st), t);
    QCOMPARE(m_calc.GetLocalTimeT(t), t);
    QCOMPARE(m_calc.GetTimeString(long(t)), m_calc.GetTimeString(ts));

    // GetFileTime reads the local wall clock as UTC, so it is ahead by the zone's offset.
    QCOMPARE(m_calc.GetFileTime(static_cast<long long>(t)), m_calc.GetFileTime(ts));

    SYSTEMTIME local;
    m_calc.GetSystemTime(local, t, 1, 250);
    QCOMPARE(QString::asprintf("%d %d %d %d %d %d.%03d/%d", local.wYear, local.wMonth, local.wDay,
                               local.wHour, local.wMinute, local.wSecond, local.wMilliseconds,
                               local.wDayOfWeek),
             fields + QStringLiteral(".250/0"));
}

void tst_TimeEx::unrepresentable()
{
    useTimeZone("Asia/Seoul");
    const qint64 before = time(nullptr);
    const qint64 now = m_calc.GetTimeT(1969, 12, 31, 23, 59, 59);
    QVERIFY(now >= before && now <= time(nullptr));

    QCOMPARE(m_calc.GetFileTime(static_cast<long long>(LLONG_MAX)), 0LL);
    SYSTEMTIME st;
    memset(&st, 0x55, sizeof st);
    m_calc.GetSystemTime(st, LLONG_MAX, 0, 5);
    QCOMPARE(QByteArray(reinterpret_cast<const char *>(&st), sizeof st), QByteArray(16, '\0'));
    m_calc.GetSystemTime(st, -1, 0, 5);
    QCOMPARE(st.wYear, WORD(1969));

    QVERIFY(m_calc.GetTimeString(-1L).IsEmpty());
    QVERIFY(m_calc.GetTimeString(0ULL, false).IsEmpty());
    QVERIFY(m_calc.GetTimeString(0LL, true).IsEmpty());
    QCOMPARE(m_calc.GetTimeString(1500ULL, false).text, QStringLiteral("1970/01/01 00:00:01.500"));
    QCOMPARE(m_calc.GetTimeString(1700000000007LL, true).text,
             QStringLiteral("2023/11/15 07:13:20.007"));
}

void tst_TimeEx::nowStrings()
{
    const QString date = QStringLiteral("\\d{4}/\\d{2}/\\d{2} "),
                  msec = QStringLiteral("\\.\\d{3}");
    const QString time = QStringLiteral("\\d{2}:\\d{2}:\\d{2}");
    const QString patterns[] = {time, date + time, time + msec, date + time + msec};
    for (int flags = 0; flags < 4; ++flags) {
        const QString text = m_calc.GetTimeStringUseFlag(flags).text;
        QVERIFY2(QRegularExpression(QLatin1Char('^') + patterns[flags] + QLatin1Char('$'))
                     .match(text)
                     .hasMatch(),
                 qPrintable(text));
    }
    // The log stamp is now, to the millisecond.
    const QDateTime before = QDateTime::currentDateTime();
    const QString stamp = m_calc.GetTimeString().text;
    const QDateTime after = QDateTime::currentDateTime();
    const QDateTime at = QDateTime::fromString(stamp, QStringLiteral("yyyy/MM/dd HH:mm:ss.zzz"));
    QVERIFY2(at >= before && at <= after, qPrintable(stamp));
}

void tst_TimeEx::duration_data()
{
    QTest::addColumn<int>("seconds");
    QTest::addColumn<int>("flags");
    QTest::addColumn<QString>("text");

    QTest::newRow("h:m:s") << 3725 << 7 << "1:02:05";
    QTest::newRow("h:m") << 3725 << 3 << "1:02";
    QTest::newRow("h") << 3725 << 1 << "1";
    QTest::newRow("m:s, total minutes") << 3725 << 6 << "62:05";
    QTest::newRow("h:s, seconds within the hour") << 3725 << 5 << "1:125";
    QTest::newRow("s, all seconds") << 3725 << 4 << "3725";
    QTest::newRow("30 minutes round down") << 1800 << 1 << "0";
    QTest::newRow("30 min 59 s round down") << 1859 << 1 << "0";
    QTest::newRow("31 minutes round up") << 1860 << 1 << "1";
    QTest::newRow("30 seconds round down") << 90 << 2 << "01";
    QTest::newRow("31 seconds round up") << 91 << 2 << "02";
    QTest::newRow("h:m rounds up into the hour") << 3599 << 3 << "1:00";
    QTest::newRow("three-digit hours") << 360000 << 7 << "100:00:00";
    QTest::newRow("nothing asked") << 3725 << 0 << "";
}

void tst_TimeEx::duration()
{
    QFETCH(int, seconds);
    QFETCH(int, flags);
    QFETCH(QString, text);
    QCOMPARE(m_calc.GetTimeString(seconds, flags).text, text);
}

QTEST_GUILESS_MAIN(tst_TimeEx)
#include "tst_timeex.moc"
