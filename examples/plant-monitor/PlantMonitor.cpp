// SPDX-License-Identifier: MIT
#include "PlantMonitor.h"

#include <CCrc.h>
#include <CFile.h>
#include <CTextFile.h>
#include <PrintMessage.h>

#include <QDateTime>
#include <QDir>
#include <QElapsedTimer>

namespace {

/// The frame's CRC-16/MODBUS as the two bytes it is sent with, high byte of the value first.
void appendCrc(std::vector<unsigned char> &frame)
{
    const int crc = CCrc::GetCrc16_15_2_1(frame.data(), int(frame.size()));
    frame.push_back(static_cast<unsigned char>(crc >> 8));
    frame.push_back(static_cast<unsigned char>(crc));
}

QByteArray latin1(const QString &text)
{
    return text.toLocal8Bit();
}

} // namespace

PlantMonitor::PlantMonitor(const PlantSettings &settings, const QString &folder)
    : m_settings(settings)
    , m_folder(folder)
{ }

PlantMonitor::~PlantMonitor()
{
    close();
}

QString PlantMonitor::linkText()
{
    return m_channel.GetCommInfoString(m_settings.link).text;
}

bool PlantMonitor::open(QString *error)
{
    const QString logFolder = m_folder + QStringLiteral("/log");
    QDir().mkpath(logFolder);
    SetLogFile(latin1(logFolder + QStringLiteral("/plant-monitor.log")).constData(),
               m_settings.keepDays);
    StartPrintMessageThread();
    PrintMessage("plant monitor started: link %s, poll every %d ms, unit %d, registers %d-%d\r\n",
                 latin1(linkText()).constData(), m_settings.pollPeriod, m_settings.unit,
                 m_settings.firstRegister, m_settings.firstRegister + m_settings.registerCount - 1);

    // One folder per day under csv/; the folder that leaves the retention period is removed.
    m_csvStore.m_strDateRoot = CString(m_folder + QStringLiteral("/csv/"));
    m_csvStore.m_nKeepDays = m_settings.keepDays;

    if (!m_db.Connect(m_settings.database)) {
        *error = QStringLiteral("cannot open the database (%1); see the log")
                     .arg(m_settings.database.strDBName.text);
        return false;
    }
    if (!m_db.Execute("create table if not exists readings (taken varchar(23), poll integer, "
                      "unit integer, first_register integer, vals varchar(700))")) {
        *error = QStringLiteral("cannot create the readings table; see the log");
        return false;
    }
    return true;
}

void PlantMonitor::close()
{
    if (m_linkUp)
        m_channel.DeleteComm(m_settings.link, 1);
    m_linkUp = false;
    if (m_db.IsOpened())
        m_db.Disconnect();
}

bool PlantMonitor::ensureLink()
{
    const bool up = m_channel.CreateComm(m_settings.link, 0, -1, 1);
    const qint64 now = QDateTime::currentMSecsSinceEpoch();
    if (up && !m_linkUp) {
        if (m_everUp) {
            ++m_summary.reconnects;
            m_summary.gapMs += now - m_downSince;
            PrintMessage("link restored after a gap of %lld ms\r\n",
                         static_cast<long long>(now - m_downSince));
        }
        m_everUp = true;
    } else if (!up && m_linkUp) {
        m_downSince = now;
        PrintMessage("link down: cannot open %s\r\n", latin1(linkText()).constData());
    }
    if (!up && !m_everUp && m_downSince == 0)
        m_downSince = now;
    m_linkUp = up;
    return up;
}

int PlantMonitor::readReply(unsigned char *buffer, int expected)
{
    // Serial reads wait in whole seconds; TCP and UDP take what has arrived.
    const int wait = m_settings.link.m_nKind == CCommData::Serial ? 1 : 0;
    int got = 0;
    QElapsedTimer timer;
    timer.start();
    while (got < expected && !timer.hasExpired(m_settings.replyTimeout)) {
        const int n = m_channel.ReadData(m_settings.link, reinterpret_cast<char *>(buffer) + got,
                                         expected - got, wait);
        if (n > 0)
            got += n;
        else if (!m_channel.IsConnected(m_settings.link))
            break;
    }
    return got;
}

void PlantMonitor::pollOnce()
{
    if (!ensureLink())
        return;
    ++m_summary.polls;
    const int count = m_settings.registerCount;
    std::vector<unsigned char> request {static_cast<unsigned char>(m_settings.unit),
                                        3,
                                        static_cast<unsigned char>(m_settings.firstRegister >> 8),
                                        static_cast<unsigned char>(m_settings.firstRegister),
                                        static_cast<unsigned char>(count >> 8),
                                        static_cast<unsigned char>(count)};
    appendCrc(request);
    m_channel.WriteData(m_settings.link, reinterpret_cast<char *>(request.data()),
                        int(request.size()));

    const int expected = 5 + 2 * count;
    std::vector<unsigned char> reply(size_t(expected), 0);
    const int got = readReply(reply.data(), expected);
    if (got == 0) {
        ++m_summary.noReply;
        PrintMessage("no reply to poll %d\r\n", m_summary.polls);
        if (!m_channel.IsConnected(m_settings.link)) {
            // The device closed the link: drop it now, the next poll opens a new one.
            m_channel.DeleteComm(m_settings.link, 1);
            m_linkUp = false;
            m_downSince = QDateTime::currentMSecsSinceEpoch();
            PrintMessage("link lost\r\n");
        }
        return;
    }
    if (got < expected) {
        ++m_summary.shortFrames;
        PrintMessage("bad frame: %d of %d bytes\r\n", got, expected);
        return;
    }
    std::vector<unsigned char> body(reply.begin(), reply.end() - 2);
    appendCrc(body);
    if (body != reply || reply[0] != m_settings.unit || reply[1] != 3 || reply[2] != 2 * count) {
        ++m_summary.badCrc;
        PrintMessage("bad frame: CRC %02X%02X, expected %02X%02X\r\n", reply[expected - 2],
                     reply[expected - 1], body[size_t(expected - 2)], body[size_t(expected - 1)]);
        return;
    }
    std::vector<int> values;
    for (int i = 0; i < count; ++i)
        values.push_back(reply[size_t(3 + 2 * i)] << 8 | reply[size_t(4 + 2 * i)]);
    store(values);
}

void PlantMonitor::store(const std::vector<int> &values)
{
    ++m_sequence;
    const CString taken = m_clock.GetTimeString(QDateTime::currentMSecsSinceEpoch(), true);
    QStringList numbers;
    for (int v : values)
        numbers << QString::number(v);
    const QString vals = numbers.join(QLatin1Char(' '));

    PrintMessage("reading %d at %s: %s\r\n", m_sequence, latin1(taken.text).constData(),
                 latin1(vals).constData());

    QByteArray time = latin1(taken.text);
    const CString cell = CTextFile::MakeString(time.data(), 64, true, false);
    bool ok = appendCsv(cell.text + QLatin1Char(',') + QString::number(m_sequence) +
                        QLatin1Char(',') + numbers.join(QLatin1Char(',')));

    const QByteArray sql =
        latin1(QStringLiteral("insert into readings values ('%1', %2, %3, %4, '%5')")
                   .arg(taken.text)
                   .arg(m_sequence)
                   .arg(m_settings.unit)
                   .arg(m_settings.firstRegister)
                   .arg(vals));
    ok = m_db.Execute(sql.constData()) && ok;
    if (ok)
        ++m_summary.stored;
    else
        ++m_summary.storeErrors;
}

bool PlantMonitor::appendCsv(const QString &line)
{
    m_csvStore.DeleteOldFile();
    const QDate today = QDate::currentDate();
    const QString dayFolder =
        QString::asprintf("%s%04d/%02d/%02d/", latin1(m_csvStore.m_strDateRoot.text).constData(),
                          today.year(), today.month(), today.day());
    m_csvStore.MakePath(latin1(dayFolder).constData());
    const QString path = dayFolder + QStringLiteral("readings.csv");
    const bool fresh = !QFile::exists(path);
    CFile file;
    if (!file.Open(CString(path), CFile::modeCreate | CFile::modeNoTruncate | CFile::modeWrite))
        return false;
    QByteArray bytes;
    if (fresh) {
        bytes = "Time,Reading";
        for (int i = 0; i < m_settings.registerCount; ++i)
            bytes += ",R" + QByteArray::number(m_settings.firstRegister + i);
        bytes += "\r\n";
    }
    bytes += latin1(line) + "\r\n";
    file.Seek(int(file.Size()));
    const bool ok = file.Write(bytes.data(), bytes.size()) == bytes.size();
    file.Close();
    return ok;
}
