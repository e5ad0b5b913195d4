// SPDX-License-Identifier: MIT
#pragma once

// One poll cycle of the plant monitor and where its readings go: the dated log, a dated CSV
// folder and the database.
#include "PlantSettings.h"

#include <CCommunication.h>
#include <CFileEx.h>
#include <CTimeEx.h>
#include <SqlDB.h>

#include <QString>

#include <vector>

struct PlantSummary
{
    int polls = 0;
    int stored = 0;
    int badCrc = 0;
    int shortFrames = 0;
    int noReply = 0;
    int reconnects = 0;
    qint64 gapMs = 0;
    int storeErrors = 0;
};

class PlantMonitor
{
public:
    PlantMonitor(const PlantSettings &settings, const QString &folder);
    ~PlantMonitor();

    /// Opens the log (its writer thread running), the CSV store and the database.
    bool open(QString *error);
    /// Sends one request and stores the reply, or counts and logs what went wrong.
    void pollOnce();
    /// Closes the link and the database.
    void close();
    const PlantSummary &summary() const { return m_summary; }
    /// The link as the channel describes it ("TCP 127.0.0.1:502" and the like).
    QString linkText();

private:
    bool ensureLink();
    /// Reads up to `expected` bytes within the reply time-out; the byte count.
    int readReply(unsigned char *buffer, int expected);
    void store(const std::vector<int> &values);
    bool appendCsv(const QString &line);

    PlantSettings m_settings;
    QString m_folder;
    CCommunication m_channel;
    CFileEx m_csvStore;
    CTimeEx m_clock;
    SqlDB m_db;
    PlantSummary m_summary;
    bool m_linkUp = false;
    bool m_everUp = false;
    qint64 m_downSince = 0;
    int m_sequence = 0;
};
