// SPDX-License-Identifier: MIT
// vantor-plant-monitor: polls a Modbus device through one CCommunication channel and keeps every
// reading in the dated log, a dated CSV folder and a database, as the programs ported onto the
// library do. With no device named in its settings it starts a simulated one on loopback.
//
//   vantor-plant-monitor [--seconds N] [--data DIR] [--gui]
//
// --seconds N  runs N seconds, then prints a summary (without it: until SIGINT or SIGTERM)
// --data DIR   the data folder: settings, log, CSV and the SQLite database (default
//              $XDG_DATA_HOME/vantor-plant-monitor, or ~/.local/share/vantor-plant-monitor)
// --gui        edits the database settings in the settings dialog first, then shows the
//              progress window while polling
// A second copy on the same data folder says so and exits with 1.
#include "ModbusSimulator.h"
#include "PlantMonitor.h"
#include "PlantSettings.h"

#include <DialogExecuting.h>
#include <DialogSetRDBInfo.h>
#include <PrintMessage.h>
#include <RunGuard.h>
#include <VantorStrings.h>

#include <QApplication>
#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QStandardPaths>

#include <atomic>
#include <csignal>
#include <cstdio>
#include <memory>

namespace {

std::atomic<bool> g_stop {false};

void onSignal(int)
{
    g_stop = true;
}

int usage()
{
    std::fprintf(stderr, "usage: vantor-plant-monitor [--seconds N] [--data DIR] [--gui]\n");
    return 2;
}

} // namespace

int main(int argc, char **argv)
{
    bool gui = false;
    int seconds = 0;
    QString folder;
    for (int i = 1; i < argc; ++i) {
        const QByteArray arg = argv[i];
        if (arg == "--gui")
            gui = true;
        else if (arg == "--seconds" && i + 1 < argc)
            seconds = QByteArray(argv[++i]).toInt();
        else if (arg == "--data" && i + 1 < argc)
            folder = QFile::decodeName(argv[++i]);
        else
            return usage();
    }
    std::unique_ptr<QCoreApplication> app(gui ? new QApplication(argc, argv)
                                              : new QCoreApplication(argc, argv));
    if (folder.isEmpty())
        folder = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
            QStringLiteral("/vantor-plant-monitor");
    folder = QDir(folder).absolutePath();
    if (!QDir().mkpath(folder)) {
        std::fprintf(stderr, "vantor-plant-monitor: cannot make %s\n", qPrintable(folder));
        return 2;
    }

    RunGuard guard(QStringLiteral("vantor-plant-monitor ") + folder);
    if (!guard.tryToRun()) {
        std::fprintf(stderr, "vantor-plant-monitor: another copy is already running on %s\n",
                     qPrintable(folder));
        return 1;
    }

    const QString settingsPath = folder + QStringLiteral("/plant-monitor.xml");
    if (!QFile::exists(settingsPath)) {
        if (!writeDefaultSettings(settingsPath, folder)) {
            std::fprintf(stderr, "vantor-plant-monitor: cannot write %s\n",
                         qPrintable(settingsPath));
            return 2;
        }
        std::printf("wrote the default settings to %s\n", qPrintable(settingsPath));
    }
    PlantSettings settings;
    QString error;
    if (!readSettings(settingsPath, settings, &error)) {
        std::fprintf(stderr, "vantor-plant-monitor: %s\n", qPrintable(error));
        return 2;
    }
    if (gui && !RDBInfoDlg(nullptr, &settings.database))
        return 0;

    // Messages go to the log file only; the summary is printed at the end.
    ExternPrintMessageFlag = 0;
    std::unique_ptr<ModbusSimulator> simulator;
    if (settings.simulated()) {
        simulator = std::make_unique<ModbusSimulator>(
            settings.simBadCrcEvery, settings.simShortEvery, settings.simDropEvery);
        if (!simulator->start()) {
            std::fprintf(stderr, "vantor-plant-monitor: no loopback port for the simulator\n");
            return 2;
        }
        settings.link.m_strIPAddr = "127.0.0.1";
        settings.link.m_nPort = std::uint16_t(simulator->port());
    }

    PlantMonitor monitor(settings, folder);
    if (!monitor.open(&error)) {
        std::fprintf(stderr, "vantor-plant-monitor: %s\n", qPrintable(error));
        return 2;
    }
    std::printf("polling %s%s every %d ms; data in %s\n", qPrintable(monitor.linkText()),
                simulator ? " (simulated device)" : "", settings.pollPeriod, qPrintable(folder));
    std::fflush(stdout);

    std::signal(SIGINT, onSignal);
    std::signal(SIGTERM, onSignal);
    if (gui) {
        DialogExecuting::Execute(nullptr, CString(QStringLiteral("Polling ") + monitor.linkText()));
        if (DialogExecuting::ExecutingDlg && seconds > 0)
            DialogExecuting::ExecutingDlg->SetRange(seconds);
    }
    QElapsedTimer run;
    run.start();
    while (!g_stop && (seconds <= 0 || !run.hasExpired(qint64(seconds) * 1000))) {
        QElapsedTimer cycle;
        cycle.start();
        monitor.pollOnce();
        if (gui) {
            if (!DialogExecuting::ExecutingDlg)
                break; // Cancel
            DialogExecuting::ExecutingDlg->SetPos(int(run.elapsed() / 1000));
            DialogExecuting::ExecutingDlg->SetText(
                CString(QStringLiteral("Polling %1: %2 readings stored")
                            .arg(monitor.linkText())
                            .arg(monitor.summary().stored)));
            PeekAndExeMessage();
        }
        const qint64 left = settings.pollPeriod - cycle.elapsed();
        if (left > 0)
            Sleep(int(left));
    }
    if (gui)
        DialogExecuting::Close();
    monitor.close();
    if (simulator)
        simulator->stop();

    const PlantSummary &s = monitor.summary();
    PrintMessage("plant monitor stopped: %d polls, %d readings stored\r\n", s.polls, s.stored);
    std::printf("summary: polls %d, readings stored %d, bad frames %d (CRC %d, short %d), "
                "no reply %d, reconnects %d (gaps %lld ms), store errors %d\n",
                s.polls, s.stored, s.badCrc + s.shortFrames, s.badCrc, s.shortFrames, s.noReply,
                s.reconnects, static_cast<long long>(s.gapMs), s.storeErrors);
    return s.storeErrors == 0 ? 0 : 3;
}
