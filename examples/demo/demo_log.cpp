// SPDX-License-Identifier: MIT
// Module services and the message log: the application name, a message handed to the
// application's own function, and a log file filled by the library's writer thread.
#include "Demo.h"

#include <Vantor.h>

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QThread>

static void showMessage(CString text)
{
    demoSay(QStringLiteral("callback received: \"%1\"").arg(text.text.trimmed()));
}

static int run(DemoContext &ctx)
{
    SetAppName("Pump Station 7");
    demoSay(QStringLiteral("application name (message-box title): %1").arg(GetAppName()));
    VantorStrings::Init();
    demoSay(QStringLiteral("language %1 -> GetLanguage() = %2")
                .arg(VantorStrings::Language.text)
                .arg(GetLanguage()));

    SetPrintMessageFunction(showMessage);
    PrintMessage("pump %d started at %.1f bar\n", 1, 3.2);
    SetPrintMessageFunction(nullptr);

    // The log file fills only while the writer runs. Messages go only to the log meanwhile.
    const QString logName = QDir(ctx.outputDir).filePath(QStringLiteral("station.log"));
    SetLogFile(QFile::encodeName(logName).constData(), 0);
    StartPrintMessageThread();
    ExternPrintMessageFlag = 0;
    for (int i = 1; i <= 3; ++i)
        PrintMessage("reading %d: level %d cm\n", i, 120 + i * 5);
    ExternPrintMessageFlag = 1;

    QFile file(logName);
    QElapsedTimer waited;
    waited.start();
    while (file.size() < 3 * 24 && waited.elapsed() < 2000)
        QThread::msleep(10);
    ClosePrintMessageThread();
    if (!file.open(QIODevice::ReadOnly))
        return 1;
    demoSay(QStringLiteral("%1 holds:").arg(logName));
    for (const QByteArray &line : file.readAll().split('\n'))
        if (!line.isEmpty())
            demoSay(QStringLiteral("  ") + QString::fromUtf8(line));
    return 0;
}

static DemoSection section(5, "Module services and message log", run);
