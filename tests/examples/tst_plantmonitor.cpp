// SPDX-License-Identifier: MIT
// The plant monitor run for a few seconds against its simulated device: what it stored in the
// CSV folder, the database and the log must agree reading for reading, and the faults the device
// makes (wrong CRC, short replies, a dropped connection) must be counted, logged and not stored.
#include <CTextFile.h>
#include <PrintMessage.h>
#include <SqlDB.h>

#include <QDate>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

namespace {

struct Summary
{
    int polls = -1, stored = -1, bad = -1, badCrc = -1, shortFrames = -1, noReply = -1,
        reconnects = -1, storeErrors = -1;
};

Summary parseSummary(const QString &out)
{
    static const QRegularExpression re(QStringLiteral(
        "summary: polls (\\d+), readings stored (\\d+), bad frames (\\d+) \\(CRC (\\d+), short "
        "(\\d+)\\), no reply (\\d+), reconnects (\\d+) \\(gaps \\d+ ms\\), store errors (\\d+)"));
    const QRegularExpressionMatch m = re.match(out);
    Summary s;
    if (m.hasMatch()) {
        int *fields[] = {&s.polls,       &s.stored,  &s.bad,        &s.badCrc,
                         &s.shortFrames, &s.noReply, &s.reconnects, &s.storeErrors};
        for (int i = 0; i < 8; ++i)
            *fields[i] = m.captured(i + 1).toInt();
    }
    return s;
}

/// One stored reading as "number|time|values".
using Readings = QStringList;

} // namespace

class tst_PlantMonitor : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;

    QString dataDir() const { return m_dir.filePath(QStringLiteral("data")); }

    /// Runs the monitor on `folder` for `seconds`; its exit code, its output in `out`.
    static int run(const QString &folder, int seconds, QString *out)
    {
        QProcess p;
        p.start(QStringLiteral(PLANT_MONITOR_PATH),
                {QStringLiteral("--seconds"), QString::number(seconds), QStringLiteral("--data"),
                 folder});
        if (!p.waitForFinished((seconds + 60) * 1000)) {
            p.kill();
            p.waitForFinished(5000);
            return -1;
        }
        *out = QString::fromLocal8Bit(p.readAllStandardOutput() + p.readAllStandardError());
        return p.exitCode();
    }

    Readings csvReadings(const QString &folder)
    {
        const QDate d = QDate::currentDate();
        CTextFile csv;
        if (!csv.OpenFile(QStringLiteral("%1/csv/%2/%3/%4/readings.csv")
                              .arg(folder)
                              .arg(d.year(), 4, 10, QLatin1Char('0'))
                              .arg(d.month(), 2, 10, QLatin1Char('0'))
                              .arg(d.day(), 2, 10, QLatin1Char('0'))))
            return {QStringLiteral("no CSV file")};
        Readings rows;
        csv.GetOneLine(); // the header
        while (csv.GetOneLine() == 0) {
            char time[64];
            int number = 0;
            csv.GetString(time, sizeof time);
            csv.GetInt(&number);
            QStringList values;
            int v = 0;
            while (csv.GetInt(&v))
                values << QString::number(v);
            rows << QStringLiteral("%1|%2|%3")
                        .arg(number)
                        .arg(QString::fromLatin1(time), values.join(QLatin1Char(' ')));
        }
        return rows;
    }

    Readings dbReadings(const QString &folder)
    {
        SqlDB db;
        const QByteArray name =
            "DRIVER=SQLite3;Database=" + QFile::encodeName(folder + QStringLiteral("/plant.db"));
        if (!db.Connect(3, "", 0, name.constData(), "", ""))
            return {QStringLiteral("no database")};
        QList<QVariant> rows;
        db.Execute("select poll, taken, vals from readings order by poll", rows);
        db.Disconnect();
        Readings out;
        for (const QVariant &row : rows) {
            const QVariantMap m = row.toMap();
            out << QStringLiteral("%1|%2|%3")
                       .arg(m.value(QStringLiteral("poll")).toInt())
                       .arg(m.value(QStringLiteral("taken")).toString(),
                            m.value(QStringLiteral("vals")).toString());
        }
        return out;
    }

    static QString logText(const QString &folder)
    {
        QFile log(folder + QStringLiteral("/log/plant-monitor.log"));
        return log.open(QIODevice::ReadOnly) ? QString::fromLocal8Bit(log.readAll()) : QString();
    }

private slots:
    void initTestCase()
    {
        QVERIFY(m_dir.isValid());
        ExternPrintMessageFlag = 0; // the statements of the checks stay off the test output
    }

    void storesEveryGoodReadingOnce()
    {
        QString out;
        QCOMPARE(run(dataDir(), 4, &out), 0);
        const Summary s = parseSummary(out);
        QVERIFY2(s.polls > 10, qPrintable(out));
        QCOMPARE(s.storeErrors, 0);
        // Every poll ends in exactly one of: stored, bad frame, no reply.
        QCOMPARE(s.stored + s.bad + s.noReply, s.polls);
        QCOMPARE(s.bad, s.badCrc + s.shortFrames);
        // The simulated device's faults all happen within a run of this length.
        QVERIFY2(s.badCrc > 0 && s.shortFrames > 0 && s.reconnects > 0, qPrintable(out));

        const Readings csv = csvReadings(dataDir());
        QCOMPARE(csv.size(), s.stored);
        QCOMPARE(dbReadings(dataDir()), csv);

        const QString log = logText(dataDir());
        static const QRegularExpression reading(
            QStringLiteral("^reading (\\d+) at ([^:]+:[^:]+:[0-9.]+): ([0-9 ]+)\r$"),
            QRegularExpression::MultilineOption);
        Readings logged;
        for (auto it = reading.globalMatch(log); it.hasNext();) {
            const QRegularExpressionMatch m = it.next();
            logged << QStringLiteral("%1|%2|%3").arg(m.captured(1), m.captured(2), m.captured(3));
        }
        QCOMPARE(logged, csv);
        // Numbered 1, 2, ... without a gap or a repeat, and each a device reading of that moment.
        for (int i = 0; i < csv.size(); ++i) {
            const QStringList f = csv.at(i).split(QLatin1Char('|'));
            QCOMPARE(f.at(0).toInt(), i + 1);
            const QStringList values = f.at(2).split(QLatin1Char(' '));
            QCOMPARE(values.size(), 4);
            const int phase = values.at(0).toInt() - 1000;
            QVERIFY(phase >= 0 && phase < 10);
            for (int r = 0; r < 4; ++r)
                QCOMPARE(values.at(r).toInt(), 1000 + 10 * r + phase);
        }
        QCOMPARE(log.count(QStringLiteral("bad frame: CRC")), s.badCrc);
        QCOMPARE(log.count(QRegularExpression(QStringLiteral("bad frame: \\d+ of 13 bytes"))),
                 s.shortFrames);
        QCOMPARE(log.count(QStringLiteral("link restored after a gap of")), s.reconnects);
        QVERIFY(log.contains(QLatin1String("Create client sock")));

        // A second run on the same folder reads the settings it wrote and adds to the stores.
        QVERIFY(!run(dataDir(), 1, &out));
        QVERIFY2(!out.contains(QLatin1String("wrote the default settings")), qPrintable(out));
        const int more = parseSummary(out).stored;
        QVERIFY(more > 0);
        QCOMPARE(dbReadings(dataDir()).size(), csvReadings(dataDir()).size());
        QCOMPARE(csvReadings(dataDir()).size(), s.stored + more);
    }

    void secondCopyRefused()
    {
        const QString folder = m_dir.filePath(QStringLiteral("single"));
        QProcess first;
        first.start(
            QStringLiteral(PLANT_MONITOR_PATH),
            {QStringLiteral("--seconds"), QStringLiteral("20"), QStringLiteral("--data"), folder});
        QVERIFY(first.waitForReadyRead(30000));
        QString out;
        QCOMPARE(run(folder, 1, &out), 1);
        QVERIFY2(out.contains(QLatin1String("another copy is already running")), qPrintable(out));
        // Another data folder is another plant: that copy runs.
        QCOMPARE(run(m_dir.filePath(QStringLiteral("other")), 1, &out), 0);
        first.kill();
        QVERIFY(first.waitForFinished(10000));
    }

    void badSettingsRefused_data()
    {
        QTest::addColumn<QString>("from");
        QTest::addColumn<QString>("to");
        QTest::newRow("no registers") << "<RegisterCount>4<"
                                      << "<RegisterCount>0<";
        QTest::newRow("past the last register") << "<FirstRegister>0<"
                                                << "<FirstRegister>65533<";
        QTest::newRow("not a number") << "<Period>100<"
                                      << "<Period>fast<";
        QTest::newRow("unknown link kind") << "<Kind>2<"
                                           << "<Kind>7<";
        QTest::newRow("not XML") << "</PlantMonitor>"
                                 << "";
    }
    void badSettingsRefused()
    {
        QFETCH(QString, from);
        QFETCH(QString, to);
        const QString folder =
            m_dir.filePath(QStringLiteral("bad-") + QString::number(qHash(from)));
        QString out;
        QCOMPARE(run(folder, 1, &out), 0);
        QFile settings(folder + QStringLiteral("/plant-monitor.xml"));
        QVERIFY(settings.open(QIODevice::ReadOnly));
        QString text = QString::fromUtf8(settings.readAll());
        settings.close();
        QVERIFY2(text.contains(from), qPrintable(text));
        text.replace(from, to);
        QVERIFY(settings.open(QIODevice::WriteOnly | QIODevice::Truncate));
        settings.write(text.toUtf8());
        settings.close();
        QCOMPARE(run(folder, 1, &out), 2);
        QVERIFY2(out.contains(QLatin1String("plant-monitor.xml")), qPrintable(out));
    }
};

QTEST_GUILESS_MAIN(tst_PlantMonitor)
#include "tst_plantmonitor.moc"
