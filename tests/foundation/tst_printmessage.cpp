#include "PrintMessage.h"
#include "PrintMessage_p.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>
#include <QtTest>

#include <atomic>

namespace {

std::atomic<qint64> fakeNow {0};
void setDay(int day) // noon local time, November 2026
{
    fakeNow = QDateTime(QDate(2026, 11, day), QTime(12, 0)).toSecsSinceEpoch();
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
private slots:
    void initTestCase();
    void init() { ExternPrintMessageFlag = 0; }
    void cleanup();
    void inHelperProcess_data();
    void inHelperProcess();
    void callback_data();
    void callback();
    void rewind_data();
    void rewind();
    void datedName_data();
    void datedName();
    void eightThreads();

private:
    QTemporaryDir m_dir;
    QString m_cwd = QDir::currentPath();
};

void tst_PrintMessage::initTestCase()
{
    QVERIFY(m_dir.isValid());
    QCOMPARE(ExternPrintMessageFlag, 1);
    QVERIFY(StartPrintMessageThread());
}

void tst_PrintMessage::cleanup()
{
    ExternPrintMessageFlag = 1;
    SetPrintMessageFunction(nullptr);
    VantorPrivate::setLogClock(nullptr);
    QDir::setCurrent(m_cwd);
    received.clear();
}

void tst_PrintMessage::inHelperProcess_data()
{
    QTest::addColumn<QString>("scenario");
    QTest::addColumn<QByteArray>("output");
    QTest::addColumn<QByteArray>("logFile");
    QTest::newRow("one line, nothing added") << "count" << QByteArray("3 items\n") << QByteArray();
    QTest::newRow("no length limit") << "long" << QByteArray(5000, 'x') + '|' << QByteArray();
    QTest::newRow("callback replaces output")
        << "callback" << QByteArray("got: to callback 1\n") << QByteArray();
    QTest::newRow("queue written out at unload") << "unload" << QByteArray() << numbered(1, 5000);
    QTest::newRow("full ring gives up its oldest")
        << "overflow" << QByteArray() << numbered(12000 - 9998, 12000);
}

void tst_PrintMessage::inHelperProcess()
{
    QFETCH(QString, scenario);
    QFETCH(QByteArray, output);
    QFETCH(QByteArray, logFile);
    const QString file = m_dir.filePath(scenario + QLatin1String(".log"));
    QProcess helper;
    helper.start(QStringLiteral(PRINTMESSAGE_HELPER), {scenario, file});
    QVERIFY(helper.waitForFinished(60000) && helper.exitCode() == 0);
    QCOMPARE(helper.readAllStandardOutput(), output);
    if (!logFile.isEmpty())
        QCOMPARE(contentOf(file), logFile);
}

void tst_PrintMessage::callback_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("expected");
    QTest::newRow("utf-8, no line end added") << QByteArray("수온 %d") << QStringLiteral("수온 %d");
    QTest::newRow("longer is cut to 2047") << QByteArray(3000, 'b') << QString(2047, 'b');
    QTest::newRow("cut before a split character")
        << QByteArray(2045, 'c') + "가나" << QString(2045, 'c');
    QTest::newRow("character ending at 2047")
        << QByteArray(2044, 'd') + "가나" << QString(2044, 'd') + QStringLiteral("가");
}

void tst_PrintMessage::callback()
{
    QFETCH(QByteArray, text);
    QFETCH(QString, expected);
    SetPrintMessageFunction([](CString text) { received << text.text; });
    PrintMessage("dropped: no log file, output off\n");
    ExternPrintMessageFlag = 1;
    PrintMessage("%s", text.constData());
    QCOMPARE(received, QStringList {expected});
}

void tst_PrintMessage::rewind_data()
{
    QTest::addColumn<int>("maxSize"); // 0: as SetLogFile opens it, appending, marked at 4,096
    QTest::addColumn<QByteArray>("lines");
    QTest::addColumn<QByteArray>("expected");
    // Four records of 50 bytes, A to D, written in "w" mode.
    QByteArray r[4];
    for (int i = 0; i < 4; ++i)
        r[i] = QByteArray(49, char('A' + i)) + '\n';
    const QByteArray all = r[0] + r[1] + r[2] + r[3];
    QTest::newRow("at the mark: no rewind yet") << 100 << all << r[3] + r[1] + r[2];
    QTest::newRow("one past the mark") << 99 << all << r[2] + r[3];
    // Append mode writes at the end even after the rewind: nothing is lost.
    QTest::newRow("append mode") << 0 << numbered(1, 400) << numbered(1, 400);
}

// Messages wait in the queue while the writer is stopped, and are all written once it restarts.
void tst_PrintMessage::rewind()
{
    QFETCH(int, maxSize);
    QFETCH(QByteArray, lines);
    QFETCH(QByteArray, expected);
    const QString file = m_dir.filePath(QStringLiteral("w%1.log").arg(maxSize));
    SetLogFile(QFile::encodeName(file), 0);
    if (maxSize)
        VantorPrivate::openLogFile(QFile::encodeName(file), 0, 0, maxSize);
    ClosePrintMessageThread();
    QTest::qWait(100);
    for (const QByteArray &line : lines.split('\n'))
        if (!line.isEmpty())
            PrintMessage("%s\n", line.constData());
    QTest::qWait(200);
    QCOMPARE(contentOf(file), QByteArray());
    QVERIFY(StartPrintMessageThread());
    QTRY_COMPARE(contentOf(file), expected);
}

void tst_PrintMessage::datedName_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("dated");
    QTest::newRow("extension") << QStringLiteral("App.txt") << QStringLiteral("App20261116.txt");
    QTest::newRow("last of several dots")
        << QStringLiteral("x.tar.gz") << QStringLiteral("x.tar20261116.gz");
    QTest::newRow("no dot: name twice")
        << QStringLiteral("log") << QStringLiteral("log20261116log");
    QTest::newRow("dot only in the folder")
        << QStringLiteral("a.b/log") << QStringLiteral("a20261116.b/log");
    QTest::newRow("dots in folder and file")
        << QStringLiteral("d.1/app.log") << QStringLiteral("d.1/app20261116.log");
}

// The first day's file keeps the plain name; from the next day on every message deletes the
// expired day's file again and reopens the dated one to append.
void tst_PrintMessage::datedName()
{
    QFETCH(QString, name);
    QFETCH(QString, dated);
    QTemporaryDir dir; // the names are relative to the current folder
    QVERIFY(QDir::setCurrent(dir.path()));
    QVERIFY(QDir().mkpath(QFileInfo(dir.filePath(name)).path())); // only dated folders are made
    setDay(15);
    SetLogFile(name.toUtf8().constData(), 2);
    PrintMessage("first\n");
    QTRY_COMPARE(contentOf(dir.filePath(name)), QByteArray("first\n"));
    setDay(16);
    const QString expired = dir.filePath(QString(dated).replace("1116", "1114"));
    QVERIFY(QDir().mkpath(QFileInfo(expired).path()));
    for (const char *text : {"second\n", "third\n"}) {
        QFile stale(expired);
        QVERIFY(stale.open(QIODevice::WriteOnly));
        stale.close();
        PrintMessage("%s", text);
        QTRY_VERIFY(contentOf(dir.filePath(dated)).endsWith(text));
        QVERIFY(!QFile::exists(expired));
    }
    QCOMPARE(contentOf(dir.filePath(dated)), QByteArray("second\nthird\n"));
    QCOMPARE(contentOf(dir.filePath(name)), QByteArray("first\n"));
    SetLogFile("", 0);
}

// Eight threads log at once while the writer runs: each thread's lines arrive whole and in its
// own order, interleaved with the others'.
void tst_PrintMessage::eightThreads()
{
    const QString file = m_dir.filePath(QStringLiteral("threads.log"));
    SetLogFile(QFile::encodeName(file), 0);
    const int threads = 8, lines = 1000;
    auto lineOf = [](int t, int i) {
        return "thread " + QByteArray::number(t) + ' ' + QByteArray::number(i) + ' ' +
            QByteArray(80, char('a' + t)) + '\n';
    };
    QList<QThread *> workers;
    for (int t = 0; t < threads; ++t) {
        workers << QThread::create([t, lineOf] {
            for (int i = 0; i < lines; ++i)
                PrintMessage("%s", lineOf(t, i).constData());
        });
        workers.last()->start();
    }
    for (QThread *w : workers)
        QVERIFY(w->wait(60000));
    qDeleteAll(workers);
    QTRY_COMPARE_WITH_TIMEOUT(contentOf(file).count('\n'), threads * lines, 30000);
    QByteArray perThread[threads];
    for (const QByteArray &line : contentOf(file).split('\n'))
        if (!line.isEmpty())
            perThread[qBound(0, line.mid(7, 1).toInt(), threads - 1)] += line + '\n';
    for (int t = 0; t < threads; ++t) {
        QByteArray expected;
        for (int i = 0; i < lines; ++i)
            expected += lineOf(t, i);
        QCOMPARE(perThread[t], expected);
    }
}

QTEST_GUILESS_MAIN(tst_PrintMessage)
#include "tst_printmessage.moc"
