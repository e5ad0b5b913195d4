#include "CTimeEx.h"

#include "timezonescope.h"

#include <QRegularExpression>
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
    void arithmetic_data();
    void arithmetic();
    void compareTime_data();
    void compareTime();
    void recordConversions();
    void timeT_data();
    void timeT();
    void nowAndUnrepresentable();
    void duration_data();
    void duration();

private:
    CTimeEx m_calc;
};

// Each row's result is the normalised record, its day of week (0 = Monday), week of the month
// and the days of its month.
void tst_TimeEx::arithmetic_data()
{
    QTest::addColumn<QString>("fields");
    QTest::addColumn<int>("kind"); // -1: RemakeTime alone, else GetBeforeTime's kind
    QTest::addColumn<QString>("expected");
    auto row = [](const char *name, const char *fields, int kind, const char *expected) {
        QTest::newRow(name) << QString::fromLatin1(fields) << kind << QString::fromLatin1(expected);
    };
    // Weeks start on Monday; week 1 ends on the first Sunday.
    row("monday the 1st", "2026 6 1 0 0 0", -1, "2026-06-01 00:00:00 d0 w1 m30");
    row("first sunday", "2026 6 7 0 0 0", -1, "2026-06-07 00:00:00 d6 w1 m30");
    row("sunday the 1st", "2026 3 1 0 0 0", -1, "2026-03-01 00:00:00 d6 w1 m31");
    row("monday the 2nd", "2026 3 2 0 0 0", -1, "2026-03-02 00:00:00 d0 w2 m31");
    row("31st, 6th week", "2026 3 31 0 0 0", -1, "2026-03-31 00:00:00 d1 w6 m31");
    // February by the 400/100/4 rule.
    row("day 0, 1900 not leap", "1900 3 0 0 0 0", -1, "1900-02-28 00:00:00 d2 w5 m28");
    row("day 0, 2000 leap", "2000 3 0 0 0 0", -1, "2000-02-29 00:00:00 d1 w5 m29");
    row("29 february 1900", "1900 2 29 0 0 0", -1, "1900-03-01 00:00:00 d3 w1 m31");
    row("february 2100", "2100 2 1 0 0 0", -1, "2100-02-01 00:00:00 d0 w1 m28");
    row("february 2024", "2024 2 29 0 0 0", -1, "2024-02-29 00:00:00 d3 w5 m29");
    // One carry or borrow per field only: 125 seconds and day 70 stay out of range.
    row("second -5", "2026 6 8 10 20 -5", -1, "2026-06-08 10:19:55 d0 w2 m30");
    row("125 seconds carry once", "2026 6 8 10 20 125", -1, "2026-06-08 10:21:65 d0 w2 m30");
    row("day 70 carries once", "2026 1 70 0 0 0", -1, "2026-02-39 00:00:00 d-1 w7 m28");
    row("carry through every field", "2023 12 31 23 59 60", -1, "2024-01-01 00:00:00 d0 w1 m31");
    row("borrow through every field", "2024 1 1 0 0 -1", -1, "2023-12-31 23:59:59 d6 w5 m31");
    row("month 13", "2025 13 15 0 0 0", -1, "2026-01-15 00:00:00 d3 w3 m31");
    row("year back from a leap day", "2024 2 29 0 0 0", 0, "2023-03-01 00:00:00 d2 w1 m31");
    row("month back over a year", "2026 1 15 0 0 0", 1, "2025-12-15 00:00:00 d0 w3 m31");
    row("31 march minus a month", "2026 3 31 0 0 0", 1, "2026-03-03 00:00:00 d1 w2 m31");
    row("week back", "2026 3 3 0 0 0", 2, "2026-02-24 00:00:00 d1 w5 m28");
    row("day back over a month", "2026 3 1 0 0 0", 3, "2026-02-28 00:00:00 d5 w5 m28");
    row("day back over a year", "2026 1 1 8 0 0", 3, "2025-12-31 08:00:00 d2 w5 m31");
    row("other kind", "2026 6 7 0 0 0", 4, "2026-06-07 00:00:00 d6 w1 m30");
}

void tst_TimeEx::arithmetic()
{
    QFETCH(QString, fields);
    QFETCH(int, kind);
    QFETCH(QString, expected);
    TimeStruct ts = record(fields);
    const int week = kind < 0 ? m_calc.RemakeTime(&ts) : m_calc.GetBeforeTime(ts, kind);
    QCOMPARE(describe(ts) + QStringLiteral(" m%1").arg(m_calc.GetLimitMonth(ts.year, ts.month)),
             expected);
    QCOMPARE(week, int(ts.week));
    QCOMPARE(m_calc.GetWeekDay(ts.year, ts.month, ts.day), int(ts.dayOfWeek));
    QCOMPARE(m_calc.GetWeek(ts.year, ts.month, ts.day), int(ts.week));
}

void tst_TimeEx::compareTime_data()
{
    QTest::addColumn<QString>("later");
    QTest::addColumn<QString>("earlier");
    auto row = [](const char *name, const char *later, const char *earlier) {
        QTest::newRow(name) << QString::fromLatin1(later) << QString::fromLatin1(earlier);
    };
    row("year", "2027 6 8 10 20 30", "2026 6 8 10 20 30");
    row("month", "2026 7 8 10 20 30", "2026 6 8 10 20 30");
    row("day", "2026 6 9 10 20 30", "2026 6 8 10 20 30");
    row("hour", "2026 6 8 11 20 30", "2026 6 8 10 20 30");
    row("minute", "2026 6 8 10 21 30", "2026 6 8 10 20 30");
    row("second", "2026 6 8 10 20 31", "2026 6 8 10 20 30");
    row("year outweighs the rest", "2027 1 1 0 0 0", "2026 12 31 23 59 59");
}

void tst_TimeEx::compareTime()
{
    QFETCH(QString, later);
    QFETCH(QString, earlier);
    TimeStruct a = record(later), b = record(earlier), c = record(later);
    a.week = 1; // week and day of week are not compared
    c.dayOfWeek = 5;
    QCOMPARE(m_calc.CompareTime(&a, &b), 1);
    QCOMPARE(m_calc.CompareTime(&b, &a), -1);
    QCOMPARE(m_calc.CompareTime(&a, &c), 0);
}

void tst_TimeEx::recordConversions()
{
    tm parts = {};
    QVERIFY(strptime("2026-06-14 23:05:09", "%Y-%m-%d %H:%M:%S", &parts));
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
    QCOMPARE(week, m_calc.GetWeek(ts));
    ts = record("2023 11 14 22 13 20");
    QCOMPARE(m_calc.GetTimeString(ts).text, QStringLiteral("2023/11/14 22:13:20"));
    QCOMPARE(m_calc.GetFileTime(ts), 1700000000000LL); // the fields read as UTC
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
    TimeStruct ts = record(fields);
    SYSTEMTIME st = {};
    st.wDayOfWeek = 7; // ConvertTimeStruct keeps the day of week and milliseconds
    st.wMilliseconds = 321;
    m_calc.ConvertTimeStruct(&st, &ts);
    QCOMPARE(describe(st), fields + QStringLiteral(".321/7"));
    QCOMPARE(m_calc.GetTimeT(ts.year, ts.month, ts.day, ts.hour, ts.minute, ts.second), t);
    QCOMPARE(m_calc.GetTimeT(ts), t);
    QCOMPARE(m_calc.GetTimeT(st), t);
    QCOMPARE(m_calc.GetLocalTimeT(t), t);
    QCOMPARE(m_calc.GetTimeString(long(t)), m_calc.GetTimeString(ts));
    // GetFileTime reads the local wall clock as UTC, so it is ahead by the zone's offset.
    QCOMPARE(m_calc.GetFileTime(static_cast<long long>(t)), m_calc.GetFileTime(ts));
    m_calc.GetSystemTime(st, t, 1, 250);
    QCOMPARE(describe(st), fields + QStringLiteral(".250/0"));
}

// The texts of now; values that have no time fall back to now, or to an empty or zero result.
void tst_TimeEx::nowAndUnrepresentable()
{
    const QString date = QStringLiteral("\\d{4}/\\d\\d/\\d\\d "),
                  msec = QStringLiteral("\\.\\d{3}"),
                  clock = QStringLiteral("\\d\\d:\\d\\d:\\d\\d");
    const QString patterns[] = {clock, date + clock, clock + msec, date + clock + msec};
    for (int flags = 0; flags < 4; ++flags) {
        const QString text = m_calc.GetTimeStringUseFlag(flags).text;
        QVERIFY2(QRegularExpression('^' + patterns[flags] + '$').match(text).hasMatch(),
                 qPrintable(text));
    }
    // The log stamp is now, to the millisecond.
    const QDateTime before = QDateTime::currentDateTime();
    const QString stamp = m_calc.GetTimeString().text;
    const QDateTime at = QDateTime::fromString(stamp, QStringLiteral("yyyy/MM/dd HH:mm:ss.zzz"));
    QVERIFY2(at >= before && at <= QDateTime::currentDateTime(), qPrintable(stamp));

    useTimeZone("Asia/Seoul");
    const qint64 now = m_calc.GetTimeT(1969, 12, 31, 23, 59, 59);
    QVERIFY(now >= before.toSecsSinceEpoch() && now <= time(nullptr));
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
    // Exactly 30 rounds down, 31 up.
    QTest::newRow("30 minutes round down") << 1800 << 1 << "0";
    QTest::newRow("31 minutes round up") << 1860 << 1 << "1";
    QTest::newRow("30 seconds round down") << 90 << 2 << "01";
    QTest::newRow("31 seconds round up") << 91 << 2 << "02";
    QTest::newRow("h:m rounds up into the hour") << 3599 << 3 << "1:00";
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
