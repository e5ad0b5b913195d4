// SPDX-License-Identifier: MIT
// Real child processes: a /bin/sh script that writes what it saw (working directory, arguments,
// environment) into files of the test's temporary folder.
#include "ExecuteApp.h"

#include <QtTest>

#include <cerrno>
#include <csignal>
#include <tuple>

// Program, mode, arguments, visibility, environment; the message logged (%1: the program, %2:
// the current folder); what report.sh saw: its folder (under the temporary one), arguments and
// VANTOR_ variables.
using Launch = std::tuple<QString, int, QStringList, int, QString, QString, QStringList>;
Q_DECLARE_METATYPE(Launch)

class tst_ExecuteApp : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;
    qint64 m_child = 0; // started here and not yet seen gone

    QString path(const QString &relative) const { return m_dir.filePath(relative); }
    QStringList seen() const
    {
        QFile file(path("seen"));
        return file.open(QIODevice::ReadOnly) ? QString::fromLocal8Bit(file.readAll()).split('\n')
                                              : QStringList();
    }

private slots:
    void initTestCase()
    {
        QVERIFY(m_dir.isValid());
        for (const char *folder : {"work", "work1", "sh"})
            QVERIFY(QDir(m_dir.path()).mkdir(QLatin1String(folder)));
        // Given "sleep" alone, it then stays until killed.
        QFile file(path("work1/report.sh"));
        QVERIFY(file.open(QIODevice::WriteOnly) &&
                file.write("#!/bin/sh\n{ pwd -P; for a in \"$@\"; do echo \"$a\"; done; env | grep "
                           "^VANTOR_ | LC_ALL=C sort; } > '" +
                           QFile::encodeName(path("seen")) +
                           "'\n[ \"$*\" != sleep ] || exec sleep 300\n"));
        QVERIFY(file.setPermissions(file.permissions() | QFileDevice::ExeOwner));
        // The children's VANTOR_ variables are this test's alone, whatever the caller exported
        // (such as a build script's VANTOR_BUILD_DIR).
        for (const QString &name : QProcessEnvironment::systemEnvironment().keys()) {
            if (name.startsWith(QLatin1String("VANTOR_")))
                qunsetenv(name.toLocal8Bit().constData());
        }
        qputenv("VANTOR_SYS", "system");
        QVERIFY(QDir::setCurrent(m_dir.path())); // where bare names are looked for
    }

    void init() { QFile::remove(path("seen")); }

    void cleanup()
    {
        delete ExecuteApp::m_pExecuteApp;
        ExecuteApp::m_pExecuteApp = nullptr;
        if (const qint64 child = std::exchange(m_child, 0))
            ::kill(pid_t(child), SIGKILL);
    }

    void launch_data()
    {
        QTest::addColumn<Launch>("launch");
        const auto row = [](const char *name, const Launch &l) { QTest::newRow(name) << l; };
        const QString report = "work1/report.sh", sys = "VANTOR_SYS=system", no;
        // The character before the last slash is dropped: work1/report.sh runs in work.
        row("doubled slash, hide",
            {"work1//report.sh", 0, {"a b", "c"}, 1, no, no, {"work", "a b", "c", "false", sys}});
        row("tripled slash folds once", {"work1///report.sh", 0, {}, 0, no, no, {"work1", sys}});
        row("show alone", {report, 0, {}, 2, no, no, {"work", "true", sys}});
        // Appended after the system's entries, so the extra value wins.
        const QString extra = "VANTOR_SYS=extra;VANTOR_A=1";
        const QStringList extraSeen {"work", "VANTOR_A=1", "VANTOR_SYS=extra"};
        row("environment", {report, 0, {}, 0, extra, "set environment2", extraSeen});
        // Found through PATH, no file check, and the whole name is the working directory.
        row("bare name, mode 2", {"sh", 2, {path(report)}, 0, no, no, {"sh", sys}});
        // Refused: the second path joins the current folder and the program, cleaned.
        row("missing", {"work1/none.sh", 0, {}, 0, no, "%1 and %2%1 file not exist.", {}});
        row("missing bare name", {"none", 1, {}, 0, no, "none and %2/none file not exist.", {}});
        // Mode 2 does not look for the file; the failed start comes through processError.
        const QString failed = "Process error: FailedToStart";
        row("missing, mode 2", {"work1/none.sh", 2, {}, 0, no, failed, {}});
        row("empty command line", {no, 2, {}, 0, no, failed, {}});
    }

    void launch()
    {
        QFETCH(Launch, launch);
        auto [program, mode, arguments, visible, environment, message, seen] = launch;
        if (program.contains('/'))
            program = path(program);
        message.replace("%1", program).replace("%2", QDir::currentPath());
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

    // A program that cannot start fails the class-wide launcher, which waits for the start;
    // the owned launcher returns at once and so reports success.
    void waitsForStart_data()
    {
        QTest::addColumn<bool>("classWide");
        QTest::newRow("class-wide waits") << true;
        QTest::newRow("owned does not") << false;
    }

    void waitsForStart()
    {
        QFETCH(bool, classWide);
        const QString program = path("work1/none.sh");
        ExecuteApp *owned = nullptr;
        const int mode = ExecuteApp::SearchPath; // not looked for: the start itself fails
        QCOMPARE(classWide ? ExecuteApp::Execute(program, {}, QString(), mode, false)
                           : ExecuteApp::Execute(&owned, program, {}, QString(), mode, false),
                 !classWide);
        delete owned;
    }

    // The child writes to this process's own output; nothing is kept in the QProcess.
    void outputForwarded()
    {
        ExecuteApp app("sh", {"-c", "echo forwarded by the child"}, QString(),
                       ExecuteApp::SearchPath, false);
        QVERIFY(app.launch(true, ExecuteApp::VisibleUnset));
        QVERIFY(app.m_pProcess->waitForFinished(10000));
        QCOMPARE(app.m_pProcess->readAllStandardOutput(), QByteArray());
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
        ExecuteApp *owned = nullptr, *&current = classWide ? ExecuteApp::m_pExecuteApp : owned;
        auto execute = [&](const QStringList &arguments) {
            const QString program = path("work1/report.sh");
            return classWide ? ExecuteApp::Execute(program, arguments, QString(), 0, false)
                             : ExecuteApp::Execute(&owned, program, arguments, QString(), 0, false);
        };
        QVERIFY(execute({"sleep"}));
        QPointer<ExecuteApp> first = current;
        QVERIFY(first->m_pProcess->waitForStarted(5000));
        const pid_t pid = pid_t(m_child = first->m_pProcess->processId());
        QVERIFY(execute({}));
        QVERIFY(first.isNull());
        // Ended and reaped with its launcher: the PID no longer names a process.
        QCOMPARE(::kill(pid, 0) == -1 ? errno : 0, ESRCH);
        m_child = 0;
        QVERIFY(current->m_pProcess->waitForFinished(10000));
        const QString work = QFileInfo(path("work")).canonicalFilePath();
        QCOMPARE(seen(), QStringList({work, "VANTOR_SYS=system", ""})); // not the first one's
        delete owned;
    }
};

QTEST_GUILESS_MAIN(tst_ExecuteApp)
#include "tst_executeapp.moc"
