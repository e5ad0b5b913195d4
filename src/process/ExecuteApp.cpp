// SPDX-License-Identifier: MIT
#include "ExecuteApp.h"

#include "StringSpliter.h"
#include "VantorLogging_p.h"

#include <QDir>
#include <QFile>
#include <QMetaEnum>

ExecuteApp *ExecuteApp::m_pExecuteApp = nullptr;

ExecuteApp::ExecuteApp(QString program, QStringList arguments, QString environment, int mode,
                       bool flag)
    : m_Program(program.replace(QLatin1String("//"), QLatin1String("/")))
    , m_Arguments(arguments)
    , m_nMode(mode)
    , m_Environment(StringSpliter::Execute(environment, QStringLiteral(";")))
    , m_pProcess(new QProcess)
{
    Q_UNUSED(flag)
    m_pProcess->setProcessChannelMode(QProcess::ForwardedChannels);
    connect(m_pProcess, qOverload<int, QProcess::ExitStatus>(&QProcess::finished), this,
            &ExecuteApp::processFinished);
    connect(m_pProcess, &QProcess::errorOccurred, this, &ExecuteApp::processError);
    connect(m_pProcess, &QProcess::started, this, &ExecuteApp::processStarted);
}

ExecuteApp::~ExecuteApp()
{
    if (m_pProcess) {
        // The child is ended here on purpose: its death is no error worth reporting.
        m_pProcess->disconnect(this);
        if (m_pProcess->state() != QProcess::NotRunning) {
            m_pProcess->kill();
            m_pProcess->waitForFinished();
        }
        delete m_pProcess;
    }
}

bool ExecuteApp::launch(bool wait, VisibleParam visible)
{
    // The folder ends one character before the last slash; see the header.
    const int slash = m_Program.lastIndexOf(QLatin1Char('/'));
    m_pProcess->setWorkingDirectory(slash > 0 ? m_Program.left(slash - 1) : m_Program);

    if (m_nMode != SearchPath && !QFile::exists(m_Program)) {
        // The joined path only makes the message clearer; the program is never started by it.
        const QString cleaned = QDir::cleanPath(QDir::currentPath() + QLatin1Char('/') + m_Program);
        qCDebug(lcVantor).noquote().nospace()
            << m_Program << " and " << cleaned << " file not exist.";
        return false;
    }

    if (!m_Environment.isEmpty()) {
        m_pProcess->setEnvironment(QProcess::systemEnvironment() + m_Environment);
        qCDebug(lcVantor) << "set environment2";
    }

    QStringList arguments = m_Arguments;
    if (visible == VisibleHide)
        arguments << QStringLiteral("false");
    else if (visible == VisibleShow)
        arguments << QStringLiteral("true");

    qCDebug(lcVantor).noquote() << "Launch" << m_Program << "m_Arguments" << arguments;

    if (!arguments.isEmpty()) {
        m_pProcess->start(m_Program, arguments, QIODevice::ReadWrite);
    } else {
        // Without arguments the program text is a command line, as QProcess::start(QString)
        // read it: an empty one is reported by Qt as FailedToStart.
        QStringList command = QProcess::splitCommand(m_Program);
        const QString program = command.isEmpty() ? QString() : command.takeFirst();
        m_pProcess->start(program, command, QIODevice::ReadWrite);
    }

    if (wait)
        return m_pProcess->waitForStarted(2000);
    return true;
}

void ExecuteApp::kill()
{
    m_pProcess->kill();
}

bool ExecuteApp::Execute(QString program, QStringList arguments, QString environment, int mode,
                         bool flag)
{
    qCDebug(lcVantor).noquote() << "Launch" << program;
    delete m_pExecuteApp;
    m_pExecuteApp = new ExecuteApp(program, arguments, environment, mode, flag);
    return m_pExecuteApp->launch(true, VisibleUnset);
}

bool ExecuteApp::Execute(ExecuteApp **owner, QString program, QStringList arguments,
                         QString environment, int mode, bool flag)
{
    if (!owner)
        return false;
    delete *owner;
    *owner = new ExecuteApp(program, arguments, environment, mode, flag);
    return (*owner)->launch(false, VisibleUnset);
}

void ExecuteApp::processStarted() { }

void ExecuteApp::processFinished(int exitCode, QProcess::ExitStatus exitStatus)
{
    Q_UNUSED(exitCode)
    Q_UNUSED(exitStatus)
}

void ExecuteApp::processError(QProcess::ProcessError error)
{
    qCDebug(lcVantor).noquote() << "Process error:"
                                << QMetaEnum::fromType<QProcess::ProcessError>().valueToKey(error);
}
