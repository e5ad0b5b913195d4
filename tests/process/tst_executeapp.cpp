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
    QString m_home;
    QList<qint64> m_children; // started here and not yet seen gone

    QString path(const QString &relative) const { return m_dir.filePath(relative); }
    QString canonical(const QString &relative) const
    {
        return QFileInfo(path(relative)).canonicalFilePath();
    }
    QStringList read(const char *name) const
    {
        QFile file(path(QStringLiteral("out/") + QLatin1String(name)));
        file.open(QIODevice::ReadOnly);
        return QString::fromLocal8Bit(file.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    }
    void writeScript(const char *name, const QByteArray &body, bool executable = true)
    {
        QFile file(path(QStringLiteral("work1/") + QLatin1String(name)));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("#!/bin/sh\n" + body);
        if (executable)
            file.setPermissions(file.permissions() | QFileDevice::ExeOwner);
    }

private slots:
    void initTestCase()
    {
        QVERIFY(m_dir.isValid());
        m_home = QDir::currentPath();
        for (const char *folder : {"out", "work", "work1", "sh"})
            QVERIFY(QDir(m_dir.path()).mkdir(QLatin1String(folder)));
        const QByteArray out = QFile::encodeName(path(QStringLiteral("out")));
        writeScript("report.sh",
                    "pwd -P > '" + out + "/pwd'\nenv > '" + out +
                        "/env'\nfor a in \"$@\"; do echo \"$a\"; done > '" + out + "/args'\n");
        writeScript("sleeper.sh", "exec sleep 300\n");
        writeScript("plain.sh", "exit 0\n", false);
        qputenv("VANTOR_SYS", "system");
    }

    void init()
    {
        for (const char *name : {"pwd", "env", "args"})
            QFile::remove(path(QStringLiteral("out/") + QLatin1String(name)));
    }

    void cleanup()
    {
        delete ExecuteApp::m_pExecuteApp;
        ExecuteApp::m_pExecuteApp = nullptr;
        for (qint64 pid : qAsConst(m_children))
            ::kill(pid_t(pid), SIGKILL);
        m_children.clear();
        QDir::setCurrent(m_home);
    }

    void launch_data()
    {
        QTest::addColumn<QString>("program");
        QTest::addColumn<int>("mode");
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("visible");
        QTest::addColumn<QString>("environment");
        QTest::addColumn<QString>("folder");
        QTest::addColumn<QStringList>("received");
        QTest::addColumn<QStringList>("seen");
        using L = QStringList;
        const QString report = QStringLiteral("work1/report.sh");
        const L system {"VANTOR_SYS=system"};
        // The character before the last slash is dropped: work1/report.sh runs in work.
        QTest::newRow("doubled slash") << "work1//report.sh" << 0 << L() << 0 << ""
                                       << "work" << L() << system;
        QTest::newRow("tripled slash folds once") << "work1///report.sh" << 0 << L() << 0 << ""
                                                  << "work1" << L() << system;
        QTest::newRow("hide") << report << 0 << L {"a b", "c"} << 1 << ""
                              << "work" << L {"a b", "c", "false"} << system;
        QTest::newRow("show alone") << report << 0 << L() << 2 << ""
                                    << "work" << L {"true"} << system;
        // Appended after the system's entries, so the extra value wins.
        QTest::newRow("environment") << report << 0 << L() << 0 << "VANTOR_SYS=extra;VANTOR_A=1"
                                     << "work" << L() << L {"VANTOR_A=1", "VANTOR_SYS=extra"};
        // Found through PATH, no file check, and the whole name is the working directory.
        QTest::newRow("bare name, mode 2") << "sh" << 2 << L {path(report)} << 0 << ""
                                           << "sh" << L() << system;
    }

    void launch()
    {
        QFETCH(QString, program);
        QFETCH(int, mode);
        QFETCH(QStringList, arguments);
        QFETCH(int, visible);
        QFETCH(QString, environment);
        QFETCH(QString, folder);
        QFETCH(QStringList, received);
        QFETCH(QStringList, seen);
        if (program.contains(QLatin1Char('/')))
            program = path(program);
        else
            QVERIFY(QDir::setCurrent(m_dir.path()));
        if (!environment.isEmpty())
            QTest::ignoreMessage(QtDebugMsg, "set environment2");
        ExecuteApp app(program, arguments, environment, mode, false);
        QVERIFY(app.launch(true, ExecuteApp::VisibleParam(visible)));
        QVERIFY(app.m_pProcess->waitForFinished(10000));
        QCOMPARE(read("pwd").value(0), canonical(folder));
        QCOMPARE(read("args"), received);
        QStringList ours = read("env").filter(QStringLiteral("VANTOR_"));
        ours.sort();
        QCOMPARE(ours, seen);
    }

    void refused_data()
    {
        QTest::addColumn<QString>("program");
        QTest::addColumn<int>("mode");
        QTest::addColumn<bool>("wait");
        QTest::addColumn<bool>("result");
        QTest::addColumn<QString>("message");
        // %2 is the current folder: the second path joins it with the program, cleaned.
        const QString missing = QStringLiteral("%1 and %2%1 file not exist.");
        QTest::newRow("missing, mode 0") << "work1/none.sh" << 0 << true << false << missing;
        QTest::newRow("missing, mode 1") << "work1/none.sh" << 1 << true << false << missing;
        QTest::newRow("missing, mode 2 proceeds") << "work1/none.sh" << 2 << false << true << "";
        QTest::newRow("bare name, mode 0")
            << "sh" << 0 << true << false << "sh and %2/sh file not exist.";
        QTest::newRow("not executable")
            << "work1/plain.sh" << 0 << true << false << "Process error: FailedToStart";
        QTest::newRow("empty command line")
            << "" << 2 << true << false << "Process error: FailedToStart";
    }

    void refused()
    {
        QFETCH(QString, program);
        QFETCH(int, mode);
        QFETCH(bool, wait);
        QFETCH(bool, result);
        QFETCH(QString, message);
        if (program.contains(QLatin1Char('/')))
            program = path(program);
        message.replace(QLatin1String("%1"), program)
            .replace(QLatin1String("%2"), QDir::currentPath());
        if (!message.isEmpty())
            QTest::ignoreMessage(QtDebugMsg, qPrintable(message));
        ExecuteApp app(program, {}, QString(), mode, false);
        QCOMPARE(app.launch(wait, ExecuteApp::VisibleUnset), result);
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
        auto execute = [&](const char *script) {
            const QString program = path(QLatin1String(script));
            return classWide ? ExecuteApp::Execute(program, {}, QString(), 0, false)
                             : ExecuteApp::Execute(&owned, program, {}, QString(), 0, false);
        };
        auto current = [&] { return classWide ? ExecuteApp::m_pExecuteApp : owned; };

        QVERIFY(execute("work1/sleeper.sh"));
        QPointer<ExecuteApp> first = current();
        QVERIFY(first->m_pProcess->waitForStarted(5000));
        const qint64 pid = first->m_pProcess->processId();
        m_children << pid;
        QCOMPARE(::kill(pid_t(pid), 0), 0);

        QVERIFY(execute("work1/report.sh"));
        QVERIFY(first.isNull());
        // Ended and reaped with its launcher: the PID no longer names a process.
        const int alive = ::kill(pid_t(pid), 0);
        const int error = errno;
        QCOMPARE(alive, -1);
        QCOMPARE(error, ESRCH);
        m_children.removeAll(pid);
        QVERIFY(current()->m_pProcess->waitForFinished(10000));
        QCOMPARE(read("pwd").value(0), canonical(QStringLiteral("work")));
        delete owned;
    }
};

QTEST_GUILESS_MAIN(tst_ExecuteApp)
#include "tst_executeapp.moc"
