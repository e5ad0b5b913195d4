// Real child processes: a /bin/sh script that writes what it saw (working directory, arguments,
// environment) into files of the test's temporary folder.
#include "ExecuteApp.h"

#include <QPointer>
#include <QTemporaryDir>
#include <QtTest>

#include <cerrno>
#include <csignal>

class tst_ExecuteApp : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;
    qint64 m_child = 0; // started here and not yet seen gone

    QString path(const QString &relative) const { return m_dir.filePath(relative); }
    // What the last report.sh saw: its working directory, arguments and VANTOR_ variables.
    QStringList seen() const
    {
        QFile file(path(QStringLiteral("seen")));
        return file.open(QIODevice::ReadOnly) ? QString::fromLocal8Bit(file.readAll()).split('\n')
                                              : QStringList();
    }
    void writeScript(const char *name, const QByteArray &body, bool executable = true)
    {
        QFile file(path(QStringLiteral("work1/") + QLatin1String(name)));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write("#!/bin/sh\n" + body));
        if (executable)
            file.setPermissions(file.permissions() | QFileDevice::ExeOwner);
    }

private slots:
    void initTestCase()
    {
        QVERIFY(m_dir.isValid());
        for (const char *folder : {"work", "work1", "sh"})
            QVERIFY(QDir(m_dir.path()).mkdir(QLatin1String(folder)));
        writeScript("report.sh",
                    "{ pwd -P; for a in \"$@\"; do echo \"$a\"; done; env | grep ^VANTOR_ | "
                    "LC_ALL=C sort; } > '" +
                        QFile::encodeName(path(QStringLiteral("seen"))) + "'\n");
        writeScript("sleeper.sh", "exec sleep 300\n");
        writeScript("plain.sh", "exit 0\n", false);
        qputenv("VANTOR_SYS", "system");
        QVERIFY(QDir::setCurrent(m_dir.path())); // where bare names are looked for
    }

    void init() { QFile::remove(path(QStringLiteral("seen"))); }

    void cleanup()
    {
        delete ExecuteApp::m_pExecuteApp;
        ExecuteApp::m_pExecuteApp = nullptr;
        if (m_child)
            ::kill(pid_t(m_child), SIGKILL);
        m_child = 0;
    }

    void launch_data()
    {
        QTest::addColumn<QString>("program");
        QTest::addColumn<int>("mode");
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("visible");
        QTest::addColumn<QString>("environment");
        QTest::addColumn<QString>("message");  // %1: the program, %2: the current folder
        QTest::addColumn<QStringList>("seen"); // the folder first, under the temporary one
        using L = QStringList;
        const QString report = QStringLiteral("work1/report.sh"), sys = "VANTOR_SYS=system", no;
        // The character before the last slash is dropped: work1/report.sh runs in work.
        QTest::newRow("doubled slash")
            << "work1//report.sh" << 0 << L() << 0 << no << no << L {"work", sys};
        QTest::newRow("tripled slash folds once")
            << "work1///report.sh" << 0 << L() << 0 << no << no << L {"work1", sys};
        QTest::newRow("hide") << report << 0 << L {"a b", "c"} << 1 << no << no
                              << L {"work", "a b", "c", "false", sys};
        QTest::newRow("show alone")
            << report << 0 << L() << 2 << no << no << L {"work", "true", sys};
        // Appended after the system's entries, so the extra value wins.
        QTest::newRow("environment")
            << report << 0 << L() << 0 << "VANTOR_SYS=extra;VANTOR_A=1"
            << "set environment2" << L {"work", "VANTOR_A=1", "VANTOR_SYS=extra"};
        // Found through PATH, no file check, and the whole name is the working directory.
        QTest::newRow("bare name, mode 2")
            << "sh" << 2 << L {path(report)} << 0 << no << no << L {"sh", sys};
        // Refused: the second path joins the current folder and the program, cleaned.
        const QString missing = QStringLiteral("%1 and %2%1 file not exist.");
        QTest::newRow("missing") << "work1/none.sh" << 0 << L() << 0 << no << missing << L();
        QTest::newRow("missing bare name")
            << "none" << 1 << L() << 0 << no << "none and %2/none file not exist." << L();
        // Mode 2 does not look for the file; the failed start comes through processError.
        const QString failed = QStringLiteral("Process error: FailedToStart");
        QTest::newRow("missing, mode 2") << "work1/none.sh" << 2 << L() << 0 << no << failed << L();
        QTest::newRow("not executable") << "work1/plain.sh" << 0 << L() << 0 << no << failed << L();
        QTest::newRow("empty command line") << no << 2 << L() << 0 << no << failed << L();
    }

    void launch()
    {
        QFETCH(QString, program);
        QFETCH(int, mode);
        QFETCH(QStringList, arguments);
        QFETCH(int, visible);
        QFETCH(QString, environment);
        QFETCH(QString, message);
        QFETCH(QStringList, seen);
        if (program.contains(QLatin1Char('/')))
            program = path(program);
        message.replace(QLatin1String("%1"), program)
            .replace(QLatin1String("%2"), QDir::currentPath());
        if (!message.isEmpty())
            QTest::ignoreMessage(QtDebugMsg, qPrintable(message));
        ExecuteApp app(program, arguments, environment, mode, false);
        QCOMPARE(app.launch(true, ExecuteApp::VisibleParam(visible)), !seen.isEmpty());
        if (seen.isEmpty())
            return;
        QVERIFY(app.m_pProcess->waitForFinished(10000));
        seen[0] = QFileInfo(path(seen[0])).canonicalFilePath();
        QCOMPARE(this->seen(), seen << QString());
    }

    void replacingEndsFirstChild_data()
    {
        QTest::addColumn<bool>("classWide");
        QTest::newRow("class-wide") << true;
        QTest::newRow("owned") << false;
    }

    void replacingEndsFirstChild()
    {
        QFETCH(bool, classWide);
        ExecuteApp *owned = nullptr;
        ExecuteApp *&current = classWide ? ExecuteApp::m_pExecuteApp : owned;
        auto execute = [&](const char *script) {
            const QString program = path(QLatin1String(script));
            return classWide ? ExecuteApp::Execute(program, {}, QString(), 0, false)
                             : ExecuteApp::Execute(&owned, program, {}, QString(), 0, false);
        };
        QVERIFY(execute("work1/sleeper.sh"));
        QPointer<ExecuteApp> first = current;
        QVERIFY(first->m_pProcess->waitForStarted(5000));
        const pid_t pid = pid_t(m_child = first->m_pProcess->processId());
        QVERIFY(execute("work1/report.sh"));
        QVERIFY(first.isNull());
        // Ended and reaped with its launcher: the PID no longer names a process.
        QCOMPARE(::kill(pid, 0) == -1 ? errno : 0, ESRCH);
        m_child = 0;
        QVERIFY(current->m_pProcess->waitForFinished(10000));
        QCOMPARE(seen().value(0), QFileInfo(path(QStringLiteral("work"))).canonicalFilePath());
        delete owned;
    }
};

QTEST_GUILESS_MAIN(tst_ExecuteApp)
#include "tst_executeapp.moc"
