// SPDX-License-Identifier: MIT
#pragma once

// The plant monitor's settings: one XML file in the data folder, written with the library's XML
// writer on the first run and read back at every start.
#include <CCommData.h>
#include <SqlInfo.h>

#include <QString>

struct PlantSettings
{
    /// The device link: kind (0 serial, 1 UDP, 2 TCP), address, port and serial settings. A TCP
    /// link with port 0 means the built-in simulated device on 127.0.0.1.
    CCommData link;
    /// Modbus unit number, the first holding register and how many are read per poll.
    int unit = 1;
    int firstRegister = 0;
    int registerCount = 4;
    /// Milliseconds between two polls, and how long one reply may take.
    int pollPeriod = 100;
    int replyTimeout = 300;
    /// Where every reading is stored. Kind 3 with an SQLite file through ODBC by default.
    SqlInfo database;
    /// Days the dated log files and the dated CSV folders are kept.
    int keepDays = 7;
    /// Faults of the simulated device: every n-th reply with a wrong CRC, every n-th reply cut
    /// short, every n-th request answered by closing the connection (0: never).
    int simBadCrcEvery = 7;
    int simShortEvery = 11;
    int simDropEvery = 25;

    bool simulated() const { return link.m_nKind == CCommData::TcpClient && link.m_nPort == 0; }
};

/// Writes the default settings for the data folder `folder` to `path`; false when it fails.
bool writeDefaultSettings(const QString &path, const QString &folder);

/// Reads `path` into `settings`; false with `error` set when the file is missing or malformed.
bool readSettings(const QString &path, PlantSettings &settings, QString *error);
