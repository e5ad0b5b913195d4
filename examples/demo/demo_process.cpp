// SPDX-License-Identifier: MIT
// Processes: a child started by the launcher with one extra environment entry, reporting what
// it saw.
#include "Demo.h"

#include <Vantor.h>

#include <QFile>

static int run(DemoContext &ctx)
{
    const QString report = ctx.outputDir + QStringLiteral("/child.txt");
    // The child runs in the program's folder less the last character of its name, a rule
    // existing installations rely on: "/bin/./sh" gives "/bin/" (/usr/bin on a merged /usr).
    const QStringList arguments {
        QStringLiteral("-c"),
        QStringLiteral(
            "printf '%s\\n' \"VANTOR_DEMO=$VANTOR_DEMO\" \"folder=$(pwd)\" \"argument=$1\" "
            "> \"$0\""),
        report, QStringLiteral("given by the parent")};
    ExecuteApp app(QStringLiteral("/bin/./sh"), arguments, QStringLiteral("VANTOR_DEMO=hello;"),
                   ExecuteApp::CheckProgramFile, false);
    if (!app.launch(true, ExecuteApp::VisibleUnset) || !app.m_pProcess->waitForFinished(5000)) {
        demoSay(QStringLiteral("the child did not run"));
        return 1;
    }
    QFile file(report);
    if (!file.open(QIODevice::ReadOnly))
        return 1;
    demoSay(QStringLiteral("the child exited with %1 and saw:").arg(app.m_pProcess->exitCode()));
    for (const QByteArray &line : file.readAll().split('\n'))
        if (!line.isEmpty())
            demoSay(QStringLiteral("   ") + QString::fromLocal8Bit(line));
    return 0;
}

static DemoSection section(70, "Processes", run);
