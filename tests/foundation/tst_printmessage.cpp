// SPDX-License-Identifier: MIT
#include "PrintMessage.h"
#include "PrintMessage_p.h"

#include <QtTest>

#include <atomic>
#include <thread>

namespace {

std::atomic<qint64> fakeNow {0};
void setDay(const QDate &day) // noon local time
{
    fakeNow = QDateTime(day, QTime(12, 0)).toSecsSinceEpoch();
    VantorPrivate::setLogClock([] { return fakeNow.load(); });
}

QStringList received; // filled on the test's own thread only

QByteArray contentOf(const QString &path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray("<missing>");
}

QByteArray numbered(int first, int last)
{
    QByteArray lines;
    for (int i = first; i <= last; ++i)
        lines += "message " + QByteArray::number(i).rightJustified(5, '0') + '\n';
    return lines;
}

} // namespace

class tst_PrintMessage : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;
    const QString m_cwd = QDir::currentPath();

private slots:
    void initTestCase()
    {
        QVERIFY(m_dir.isValid());
        QCOMPARE(ExternPrintMessageFlag, 1);
        QVERIFY(StartPrintMessageThread());
    }
    void init() { ExternPrintMessageFlag = 0; }
    void cleanup()
    {
        ExternPrintMessageFlag = 1;
        SetPrintMessageFunction(nullptr);
        VantorPrivate::setLogClock(nullptr);
        QDir::setCurrent(m_cwd);
        received.clear();
    }

    // What reaches standard output, or, for the writer's scenarios, the log file.
    void inHelperProcess_data()
    {
        QTest::addColumn<QString>("scenario");
        QTest::addColumn<QByteArray>("expected");
        QTest::newRow("one line, nothing added") << "count" << QByteArray("3 items\n");
        QTest::newRow("no length limit") << "long" << QByteArray(5000, 'x') + '|';
        QTest::newRow("callback replaces output")
            << "callback" << QByteArray("got: to callback 1\n");
        QTest::newRow("queue written out at unload") << "unload" << numbered(1, 5000);
        QTest::newRow("full ring gives up its oldest")
            << "overflow" << numbered(12000 - 9998, 12000);
    }
    void inHelperProcess()
    {
        QFETCH(QString, scenario);
        QFETCH(QByteArray, expected);
        const QString file = m_dir.filePath(scenario + ".log");
        const bool toFile = scenario == "unload" || scenario == "overflow";
        QProcess helper;
        helper.start(PRINTMESSAGE_HELPER, {scenario, file});
        QVERIFY(helper.waitForFinished(60000) && helper.exitCode() == 0);
        QCOMPARE(helper.readAllStandardOutput(), toFile ? QByteArray() : expected);
        if (toFile)
            QCOMPARE(contentOf(file), expected);
    }

    // Eight threads overflow the ring while the writer is stopped: the ring keeps the newest
    // 9,999 messages, every one whole; of each thread that is an unbroken run up to its last.
    // The 10,400 messages overflow the ring only near their end, where adders that race past
    // the full-ring check would wrap it onto its read position and leave fewer lines.
    void overflowFromThreads()
    {
        // The race needs the threads to meet at the full ring: eight rounds make a miss unlikely.
        for (int round = 0; round < 8; ++round) {
            const QString file = m_dir.filePath(QString("overflow-%1.log").arg(round));
            QProcess helper;
            helper.start(PRINTMESSAGE_HELPER, {"threads", file});
            QVERIFY(helper.waitForFinished(60000) && helper.exitCode() == 0);
            const QList<QByteArray> lines = contentOf(file).split('\n');
            QCOMPARE(lines.size(), 9999 + 1);
            QCOMPARE(lines.last(), QByteArray());
            int last[8] = {-1, -1, -1, -1, -1, -1, -1, -1};
            for (int i = 0; i < 9999; ++i) {
                const QByteArray &line = lines[i];
                const int t = line.size() > 1 ? line[1] - '0' : -1;
                QVERIFY2(t >= 0 && t < 8, line.constData());
                const int seq = line.mid(3, 5).toInt();
                QCOMPARE(line,
                         QString::asprintf("T%d %05d ", t, seq).toLatin1() +
                             QByteArray(40, char('a' + t)));
                QVERIFY2(last[t] < 0 || seq == last[t] + 1, line.constData());
                last[t] = seq;
            }
            for (int t = 0; t < 8; ++t)
                QVERIFY(last[t] < 0 || last[t] == 1299);
        }
    }

    // While the writer idles, a message reaches the file at once (documented: within about
    // 100 ms) and a stop request ends the writer at once. The bounds leave room for a loaded
    // machine; a writer that missed the wake-up would wait for ever and fail them.
    void promptWriter()
    {
        const QString file = m_dir.filePath("prompt.log");
        QProcess helper;
        helper.start(PRINTMESSAGE_HELPER, {"prompt", file});
        if (!helper.waitForFinished(20000)) {
            helper.kill();
            helper.waitForFinished();
            QFAIL("the writer did not stop");
        }
        const QList<QByteArray> ms = helper.readAllStandardOutput().trimmed().split(' ');
        QCOMPARE(ms.size(), 2);
        QVERIFY2(ms[0].toInt() >= 0 && ms[0].toInt() < 1000, ms[0].constData());
        QVERIFY2(ms[1].toInt() < 1000, ms[1].constData());
        QCOMPARE(contentOf(file), QByteArray("prompt\n"));
    }

    void callback_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QString>("expected");
        QTest::newRow("utf-8, no line end added") << QByteArray("수온 %d") << QString("수온 %d");
        // Cut to 2,047 bytes, before a character that would not fit whole.
        QTest::newRow("character ending at 2048")
            << QByteArray(2045, 'c') + "가나" << QString(2045, 'c');
        QTest::newRow("character ending at 2047")
            << QByteArray(2044, 'd') + "가나" << QString(2044, 'd') + QString("가");
    }
    void callback()
    {
        QFETCH(QByteArray, text);
        QFETCH(QString, expected);
        SetPrintMessageFunction([](CString text) { received << text.text; });
        PrintMessage("dropped: no log file, output off\n");
        ExternPrintMessageFlag = 1;
        PrintMessage("%s", text.constData());
        QCOMPARE(received, QStringList {expected});
    }

    // Four records of 50 bytes, A to D, written in "w" mode with the rewind mark lowered; in the
    // "a" mode that SetLogFile uses a rewind still writes at the end (see eightThreads).
    void rewind_data()
    {
        QTest::addColumn<int>("maxSize");
        QTest::addColumn<QByteArray>("expected");
        auto rec = [](char c) { return QByteArray(49, c) + '\n'; };
        QTest::newRow("at the mark: no rewind yet") << 100 << rec('D') + rec('B') + rec('C');
        QTest::newRow("one past the mark") << 99 << rec('C') + rec('D');
    }
    // Messages wait in the queue while the writer is stopped, and are all written once it
    // restarts.
    void rewind()
    {
        QFETCH(int, maxSize);
        QFETCH(QByteArray, expected);
        const QByteArray file = QFile::encodeName(m_dir.filePath(QString("w%1.log").arg(maxSize)));
        SetLogFile(file, 0);
        VantorPrivate::openLogFile(file, 0, 0, maxSize);
        ClosePrintMessageThread();
        QTest::qWait(100);
        for (char c : QByteArray("ABCD"))
            PrintMessage("%s\n", QByteArray(49, c).constData());
        QTest::qWait(200);
        QCOMPARE(contentOf(file), QByteArray());
        QVERIFY(StartPrintMessageThread());
        QTRY_COMPARE(contentOf(file), expected);
    }

    void rewindInBatches_data()
    {
        QTest::addColumn<int>("maxSize");
        QTest::addColumn<QList<int>>("lengths"); // of the records, used in turn
        QTest::addColumn<int>("records");
        QTest::newRow("one past the mark, rewound in mid-batch") << 99 << QList<int> {50} << 150;
        QTest::newRow("at the mark: the next record rewinds") << 100 << QList<int> {50} << 150;
        QTest::newRow("lengths 1 to 2,047 across batches")
            << 1000 << QList<int> {1, 77, 300, 2047, 12, 999} << 500;
    }
    // Records queued while the writer is stopped reach the file in batches; the rewinds of a
    // write-mode log land exactly where a position asked of the stream before each record would
    // put them, and no record of a batch is lost.
    void rewindInBatches()
    {
        QFETCH(int, maxSize);
        QFETCH(QList<int>, lengths);
        QFETCH(int, records);
        const QByteArray file =
            QFile::encodeName(m_dir.filePath(QString("batch-%1.log").arg(QTest::currentDataTag())));
        SetLogFile(file, 0);
        VantorPrivate::openLogFile(file, 0, 0, maxSize);
        ClosePrintMessageThread();
        QTest::qWait(100);
        QByteArray expected; // the file as stdio makes it: rewound once past the mark
        int position = 0;
        for (int i = 0; i < records; ++i) {
            const int length = lengths[i % lengths.size()];
            const QByteArray record = QByteArray(length - 1, char('a' + i % 26)) + '\n';
            PrintMessage("%s", record.constData());
            if (position > maxSize)
                position = 0;
            expected.resize(qMax(expected.size(), position + length));
            expected.replace(position, length, record);
            position += length;
        }
        QVERIFY(StartPrintMessageThread());
        QTRY_COMPARE(contentOf(file), expected);
    }

    void datedName_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QDate>("day"); // the day SetLogFile is called; the next day is dated
        QTest::addColumn<QString>("dated");
        QTest::addColumn<QString>("expired"); // two days before the dated one
        const QDate nov15(2026, 11, 15);
        QTest::newRow("last of several dots") << "x.tar.gz" << nov15 << "x.tar20261116.gz"
                                              << "x.tar20261114.gz";
        QTest::newRow("no dot: name twice") << "log" << nov15 << "log20261116log"
                                            << "log20261114log";
        QTest::newRow("dot only in the folder") << "a.b/log" << nov15 << "a20261116.b/log"
                                                << "a20261114.b/log";
        QTest::newRow("one-digit month and day, across a year end")
            << "App.txt" << QDate(2026, 12, 31) << "App20270101.txt"
            << "App20261230.txt";
    }
    // The first day's file keeps the plain name; from the next day on every message deletes the
    // expired day's file again and reopens the dated one to append.
    void datedName()
    {
        QFETCH(QString, name);
        QFETCH(QDate, day);
        QFETCH(QString, dated);
        QFETCH(QString, expired);
        QTemporaryDir dir; // the names are relative to the current folder
        QVERIFY(QDir::setCurrent(dir.path()));
        QVERIFY(QDir().mkpath(QFileInfo(name).path())); // only dated folders are made
        setDay(day);
        SetLogFile(name.toUtf8().constData(), 2);
        PrintMessage("first\n");
        QTRY_COMPARE(contentOf(name), QByteArray("first\n"));
        setDay(day.addDays(1));
        QVERIFY(QDir().mkpath(QFileInfo(expired).path()));
        for (const char *text : {"second\n", "third\n"}) {
            QVERIFY(QFile(expired).open(QIODevice::WriteOnly));
            PrintMessage("%s", text);
            QTRY_VERIFY(contentOf(dated).endsWith(text));
            QVERIFY(!QFile::exists(expired));
        }
        QCOMPARE(contentOf(dated), QByteArray("second\nthird\n"));
        QCOMPARE(contentOf(name), QByteArray("first\n"));
        SetLogFile("", 0);
    }

    // Eight threads log at once while the writer runs: each thread's lines arrive whole and in
    // its own order, interleaved with the others'. The file passes the rewind mark of 4,096 bytes
    // many times over, and loses nothing to it.
    void eightThreads()
    {
        const QString file = m_dir.filePath("threads.log");
        SetLogFile(QFile::encodeName(file), 0);
        auto lineOf = [](int t, int i) {
            return QByteArray(80, char('a' + t)) + ' ' + QByteArray::number(i) + '\n';
        };
        std::vector<std::thread> workers;
        for (int t = 0; t < 8; ++t)
            workers.emplace_back([t, lineOf] {
                for (int i = 0; i < 1000; ++i)
                    PrintMessage("%s", lineOf(t, i).constData());
            });
        for (std::thread &w : workers)
            w.join();
        QTRY_COMPARE_WITH_TIMEOUT(contentOf(file).count('\n'), 8000, 30000);
        int next[8] = {}; // with the count above, every line of every thread once and in order
        for (const QByteArray &line : contentOf(file).split('\n')) {
            const int t = line.isEmpty() ? -1 : qBound(0, line[0] - 'a', 7);
            if (t >= 0)
                QCOMPARE(line + '\n', lineOf(t, next[t]++));
        }
    }
};

QTEST_GUILESS_MAIN(tst_PrintMessage)
#include "tst_printmessage.moc"
