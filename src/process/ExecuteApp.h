// SPDX-License-Identifier: MIT
#pragma once

#include "vantor_export.h"

#include <QObject>
#include <QProcess>
#include <QString>
#include <QStringList>

/**
 * Starts another program as a child process and keeps its QProcess, so that the caller can
 * end it later.
 *
 * The child shares this process's standard output and error (forwarded channels). Everything
 * the launcher has to say goes to Qt's debug stream under the "vantor" logging category, not to
 * the message log: "Launch" with the program and its arguments, "set environment2" when extra
 * environment entries are passed, "Process error: " with the QProcess::ProcessError name, and
 * "<program> and <path> file not exist." when the program file is missing.
 *
 * A launcher is used once: the static Execute() forms delete the previous launcher, which ends
 * its child if it is still running, and make a new one.
 */
class VANTOR_EXPORT ExecuteApp : public QObject
{
    Q_OBJECT

public:
    /// The word appended to the child's arguments, telling a cooperating program whether to show.
    enum VisibleParam {
        VisibleUnset = 0, ///< nothing is appended
        VisibleHide = 1,  ///< "false" is appended
        VisibleShow = 2   ///< "true" is appended
    };

    /**
     * The meaning of the `mode` argument. The constructor keeps taking a plain int, so ported
     * calls with bare numbers compile and mean the same; any value other than SearchPath
     * requires the file.
     */
    enum Mode {
        CheckProgramFile = 0, ///< the program file must exist before the start
        SearchPath = 2        ///< not looked for: a program found through the search path
    };

    /**
     * Every "//" in `program` becomes "/" in one left-to-right pass, so "///" is stored as "//".
     * `environment` holds extra NAME=value entries separated by ";" (cut with StringSpliter).
     * With `mode` SearchPath (2) the program file is not looked for before starting; any other
     * mode requires the file to exist (see Mode). `flag` is accepted for
     * callers that pass it and is ignored.
     */
    ExecuteApp(QString program, QStringList arguments, QString environment, int mode, bool flag);
    /// Deletes the QProcess, which ends a child that is still running.
    ~ExecuteApp() override;

    /**
     * Starts the program.
     *
     * The working directory is the program path up to its last "/" less one more character:
     * for "C:/apps/tool.exe" it is "C:/app", for "/opt/x/tool" it is "/opt/". The character
     * before the last slash is dropped on purpose and existing installations rely on it; when
     * that folder does not exist the start fails. A path without "/", or whose only "/" is
     * the first character, is used whole as the working directory.
     *
     * Extra environment entries go after the system environment, so an entry wins over the
     * system's variable of the same name. With arguments (including the appended visibility
     * word) the program is started as it stands; without any, the program text is read as a
     * command line (so a path holding spaces is cut there).
     *
     * Returns false when the program file is missing (mode other than 2). With `wait` true it
     * returns whether the child started within 2000 ms; with `wait` false it returns true at
     * once, and a failure shows only as "Process error: " on the debug stream.
     */
    bool launch(bool wait, VisibleParam visible);
    /// Kills the child at once (SIGKILL on Linux).
    void kill();

    /**
     * Makes the application's one current launcher (m_pExecuteApp), deleting the previous one
     * and so ending its child, and launches it waiting up to 2000 ms for the start.
     */
    static bool Execute(QString program, QStringList arguments, QString environment, int mode,
                        bool flag);
    /**
     * The same with a launcher the caller keeps in `*owner`: a launcher already there is
     * deleted (ending its child), and the new one is launched without waiting. A null `owner`
     * starts nothing and gives false.
     */
    static bool Execute(ExecuteApp **owner, QString program, QStringList arguments,
                        QString environment, int mode, bool flag);

    /// The launcher made by the class-wide Execute(); null until then. Not guarded: call that
    /// Execute() from one thread only.
    static ExecuteApp *m_pExecuteApp;

    /// The program path, with "//" folded once.
    QString m_Program;
    /// The arguments, each passed as one word. The visibility word ("true"/"false") is added at
    /// launch, not stored here; with no arguments m_Program is split as a command line.
    QStringList m_Arguments;
    /// A Mode value: SearchPath skips the file check.
    int m_nMode;
    /// Extra environment entries, NAME=value.
    QStringList m_Environment;
    /// The child process; owned.
    QProcess *m_pProcess;

public slots:
    /// Does nothing.
    void processStarted();
    /// Does nothing.
    void processFinished(int exitCode, QProcess::ExitStatus exitStatus);
    /// Writes "Process error: " and the error's name (FailedToStart, Crashed…) to the debug
    /// stream.
    void processError(QProcess::ProcessError error);
};
