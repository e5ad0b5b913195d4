// SPDX-License-Identifier: MIT
#include "Lunar.h"

#include <QCryptographicHash>
#include <QtTest>

class tst_Lunar : public QObject
{
    Q_OBJECT

private slots:
    void toSolar_data();
    void toSolar();
    void refused_data();
    void refused();
    void tableReadBack();
};

static QDate iso(const char *text)
{
    return QDate::fromString(QLatin1String(text), Qt::ISODate);
}

// Published Seollal, Chuseok and Buddha's Birthday dates, and an independent Gregorian day count
// over the month codes.
void tst_Lunar::toSolar_data()
{
    QTest::addColumn<QDate>("lunar");
    QTest::addColumn<QDate>("solar");

    static const char *const rows[][3] = {
        {"1841-01-01", "1841-01-23", "first day of the table"},
        {"1900-01-01", "1900-01-31", "new year 1900"},
        {"1970-01-01", "1970-02-06", "new year 1970"},
        {"2000-01-01", "2000-02-05", "new year 2000"},
        {"2020-01-01", "2020-01-25", "new year 2020"},
        {"2023-01-01", "2023-01-22", "new year 2023"},
        {"2024-01-01", "2024-02-10", "new year 2024"},
        {"2020-08-15", "2020-10-01", "chuseok 2020"},
        {"2020-04-08", "2020-04-30", "buddha's birthday 2020, before a leap month"},
        // A month followed by a leap month (codes 3-6) and the regular month after the leap.
        {"1841-03-29", "1841-04-20", "last day, long leap follows"},
        {"1841-04-01", "1841-05-21", "after a long leap"},
        {"1849-04-29", "1849-05-21", "last day, short leap follows"},
        {"1849-05-01", "1849-06-20", "after a short leap"},
        {"1900-08-30", "1900-09-23", "long month, short leap follows"},
        {"1900-09-01", "1900-10-23", "after it"},
        {"2012-03-30", "2012-04-20", "long month, long leap follows"},
        {"2012-04-01", "2012-05-21", "after that"},
        {"2023-03-01", "2023-04-20", "after the leap second month"},
        {"2033-11-30", "2033-12-21", "before the leap 11th month"},
        {"2033-12-01", "2034-01-20", "after the leap 11th month"},
        // Gregorian year and month ends: 1900 is not a leap year, 2000 is.
        {"1844-11-22", "1844-12-31", "day 366 stays in its year"},
        {"1844-11-23", "1845-01-01", "next year"},
        {"1900-01-29", "1900-02-28", "1900-02-28"},
        {"1900-02-01", "1900-03-01", "1900 has no 29 February"},
        {"2000-01-25", "2000-02-29", "2000 has 29 February"},
        {"2043-12-30", "2044-01-29", "last day of the table lands in 2044"},
    };
    for (const auto &row : rows)
        QTest::newRow(row[2]) << iso(row[0]) << iso(row[1]);
}

void tst_Lunar::toSolar()
{
    QFETCH(QDate, lunar);
    QFETCH(QDate, solar);
    QDate result;
    QCOMPARE(Lunar::toSolar(lunar, result), 1);
    QCOMPARE(result, solar);
}

// Out of the table's years, or past the month's last day: toSolar refuses and leaves the result
// alone, and lastDay gives 0 outside the table.
void tst_Lunar::refused_data()
{
    QTest::addColumn<int>("year");
    QTest::addColumn<int>("month");
    QTest::addColumn<int>("day");
    QTest::addColumn<int>("lastDay");
    QTest::newRow("year 1840") << 1840 << 12 << 1 << 0;
    QTest::newRow("year 2044") << 2044 << 1 << 1 << 0;
    QTest::newRow("month 13") << 2000 << 13 << 1 << 0;
    QTest::newRow("day 30 of a 29-day month") << 2023 << 1 << 30 << 29;
    QTest::newRow("day 30 of a short month before a long leap") << 1841 << 3 << 30 << 29;
    QTest::newRow("invalid date") << 0 << 0 << 0 << 0;
}

void tst_Lunar::refused()
{
    QFETCH(int, year);
    QFETCH(int, month);
    QFETCH(int, day);
    QFETCH(int, lastDay);
    QDate result(1999, 9, 9);
    QCOMPARE(Lunar::toSolar(QDate(year, month, day), result), 0);
    QCOMPARE(result, QDate(1999, 9, 9));
    QCOMPARE(Lunar::lastDay(year, month), lastDay);
}

// Reads every month code back through the public interface: the regular month's length from
// lastDay, its leap month's from the gap to the next regular month. A month a day too long or
// too short anywhere in the table changes the counts or the digest.
void tst_Lunar::tableReadBack()
{
    auto start = [](int y, int m) {
        QDate s;
        return Lunar::toSolar(QDate(y, m, 1), s) ? s.toJulianDay() : qint64(-1000);
    };
    QByteArray codes;
    for (int y = 1841; y <= 2043; ++y) {
        for (int m = 1; m <= 12; ++m) {
            const int days = Lunar::lastDay(y, m);
            const qint64 next = y == 2043 && m == 12
                ? start(y, m) + days
                : (m == 12 ? start(y + 1, 1) : start(y, m + 1));
            const qint64 leap = next - start(y, m) - days;
            QVERIFY2(
                (days == 29 || days == 30) && (leap == 0 || leap == 29 || leap == 30),
                qPrintable(QStringLiteral("%1-%2: %3 + %4").arg(y).arg(m).arg(days).arg(leap)));
            codes.append(char(leap == 0 ? days - 28 : (days == 29 ? leap - 26 : leap - 24)));
        }
    }
    QCOMPARE(codes.mid(0, 12), QByteArray::fromHex("010204010102010201020201"));
    QCOMPARE(codes.mid((2023 - 1841) * 12, 12), QByteArray::fromHex("010502010201020201020102"));
    QCOMPARE(codes.right(12), QByteArray::fromHex("010201010201010202010202"));
    QCOMPARE(codes.count(char(1)), 1095);
    QCOMPARE(codes.count(char(2)), 1266);
    QCOMPARE(codes.size(), 1095 + 1266 + 75);
    QCOMPARE(QCryptographicHash::hash(codes, QCryptographicHash::Sha1).toHex(),
             QByteArray("955d34bcfa21533c27f189b2783bf1ce3a1f0f15"));
}

QTEST_APPLESS_MAIN(tst_Lunar)
#include "tst_lunar.moc"
