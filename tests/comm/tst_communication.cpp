// SPDX-License-Identifier: MIT
// CCommData (record, file form, dialog record) and the channel's own rules: texts, renewal
// bookkeeping, the port-sequence table and bad input. The links themselves are tested with
// real peers in tst_tcpsock, tst_udpsock, tst_serialcomm and tst_modbus.
#include "commtest.h"

#include <algorithm>

#include <cstring>
#include <thread>
#include <vector>

class TestCommunication : public QObject
{
    Q_OBJECT

private slots:
    void infoStrings_data();
    void infoStrings();
    void assignmentCopiesSettingsOnly();
    void fileForm();
    void fileCutShort_data();
    void fileCutShort();
    void dialogRecord();
    void renewalBookkeeping();
    void portSequence();
    void portSequenceConcurrent();
    void badInput();

private:
    static CCommData sample();
    static QByteArray written(CCommData &data);
};

CCommData TestCommunication::sample()
{
    CCommData data;
    data.m_nKind = CCommData::TcpClient;
    data.m_nPort = 0xA1B2;
    std::strcpy(data.m_CommInfo.PortName, "/dev/ttyUSB0");
    data.m_CommInfo.BaudRate = 19200;
    data.m_CommInfo.Parity = 2;
    data.m_strIPAddr = "10.0.0.5";
    return data;
}

QByteArray TestCommunication::written(CCommData &data)
{
    CFile file;
    file.Open(CString(), CFile::modeReadWrite);
    data.Write(file);
    const qint64 size = file.Size();
    QByteArray bytes(int(size), '\0');
    file.Seek(0);
    file.Read(bytes.data(), int(size));
    return bytes;
}

void TestCommunication::infoStrings_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("info");
    QTest::addColumn<QString>("infoString");
    QTest::newRow("serial") << 0 << ", 9600, 8, 1, NONE"
                            << ", 9600, 8, 1, NONE";
    QTest::newRow("udp") << 1 << "10.0.0.5:502"
                         << "UDP:10.0.0.5:502";
    QTest::newRow("tcp client") << 2 << "10.0.0.5:502"
                                << "TCP:10.0.0.5:502";
    QTest::newRow("tcp server side") << 3 << "10.0.0.5:502"
                                     << "TCP Server :502";
}

void TestCommunication::infoStrings()
{
    QFETCH(int, kind);
    QFETCH(QString, info);
    QFETCH(QString, infoString);
    CCommData data;
    data.m_nKind = std::uint8_t(kind);
    if (kind != 0) {
        data.m_strIPAddr = "10.0.0.5";
        data.m_nPort = 502;
    }
    CCommunication channel;
    QCOMPARE(channel.GetCommInfo(&data).text, info);
    QCOMPARE(channel.GetCommInfoString(data).text, infoString);
}

void TestCommunication::assignmentCopiesSettingsOnly()
{
    CCommData source = sample();
    source.m_nParam = 7;
    source.m_nSequence = 3;
    source.m_nTime = 123;
    source.m_nTcpOpened = 1;
    source.m_nRenewalPeriod = 50;
    CCommData target;
    target = source;
    QCOMPARE(int(target.m_nKind), int(CCommData::TcpClient));
    QCOMPARE(int(target.m_nPort), 0xA1B2);
    QCOMPARE(QByteArray(target.m_CommInfo.PortName), QByteArray("/dev/ttyUSB0"));
    QCOMPARE(target.m_CommInfo.BaudRate, 19200);
    QCOMPARE(target.m_strIPAddr, CString("10.0.0.5"));
    QCOMPARE(target.m_nParam, 0);
    QCOMPARE(target.m_nSequence, -1);
    QCOMPARE(target.m_nTime, qint64(0));
    QCOMPARE(target.m_nTcpOpened, 0);
    QCOMPARE(target.m_nRenewalPeriod, 10000);
}

void TestCommunication::fileForm()
{
    CCommData data = sample();
    const QByteArray bytes = written(data);
    QCOMPARE(bytes.size(), 1 + 1 + 72 + 4 + 8 + 2);
    QCOMPARE(quint8(bytes[0]), quint8(2));
    QCOMPARE(quint8(bytes[1]), quint8(0));
    QCOMPARE(bytes.mid(2, 72), QByteArray(reinterpret_cast<const char *>(&data.m_CommInfo), 72));
    QCOMPARE(bytes.mid(74, 4), QByteArray("\x08\x00\x00\x00", 4));
    QCOMPARE(bytes.mid(78, 8), QByteArray("10.0.0.5"));
    QCOMPARE(bytes.right(2), QByteArray("\xB2\xA1", 2));

    CFile file;
    file.Open(CString(), CFile::modeReadWrite);
    file.Write(const_cast<char *>(bytes.constData()), bytes.size());
    file.Seek(0);
    CCommData back;
    QVERIFY(back.Read(file));
    QCOMPARE(written(back), bytes);
}

void TestCommunication::fileCutShort_data()
{
    QTest::addColumn<int>("keep");
    QTest::addColumn<int>("stringCount"); // -1: as written
    QTest::newRow("empty file") << 0 << -1;
    QTest::newRow("kind only") << 1 << -1;
    QTest::newRow("inside the settings") << 40 << -1;
    QTest::newRow("inside the string count") << 76 << -1;
    QTest::newRow("inside the string") << 82 << -1;
    QTest::newRow("without the port") << 86 << -1;
    QTest::newRow("half the port") << 87 << -1;
    QTest::newRow("string count beyond the file") << 88 << 1000000;
    QTest::newRow("negative string count") << 88 << -8;
}

void TestCommunication::fileCutShort()
{
    QFETCH(int, keep);
    QFETCH(int, stringCount);
    CCommData data = sample();
    QByteArray bytes = written(data).left(keep);
    if (stringCount != -1) {
        const qint32 count = stringCount;
        bytes.replace(74, 4, reinterpret_cast<const char *>(&count), 4);
    }
    CFile file;
    file.Open(CString(), CFile::modeReadWrite);
    file.Write(bytes.data(), bytes.size());
    file.Seek(0);
    CCommData target;
    target.m_strIPAddr = "1.2.3.4";
    const QByteArray before = written(target);
    QVERIFY(!target.Read(file));
    QCOMPARE(written(target), before);
}

void TestCommunication::dialogRecord()
{
    CCommData data = sample();
    CommSetting setting;
    std::memset(&setting, 0x77, sizeof setting);
    data.GetCommSetting(setting);
    QCOMPARE(QByteArray(setting.Reserved, 32), QByteArray(32, '\0'));
    QCOMPARE(setting.Kind, 2);
    QCOMPARE(setting.Port, 0xA1B2);
    QCOMPARE(std::memcmp(&setting.Serial, &data.m_CommInfo, sizeof(CommInfo)), 0);
    QCOMPARE(QByteArray(setting.IPAddr), QByteArray("10.0.0.5"));
    QCOMPARE(QByteArray(setting.IPAddr + 8, 56), QByteArray(56, '\0'));

    // A long address is cut to 63 bytes and stays terminated.
    data.m_strIPAddr = CString(QString(70, QLatin1Char('9')));
    data.GetCommSetting(setting);
    QCOMPARE(QByteArray(setting.IPAddr), QByteArray(63, '9'));
    QCOMPARE(setting.Port, 0xA1B2);

    // Back: kind and port narrowed, a full 64-byte address without NUL read to its end.
    setting.Kind = 0x103;
    setting.Port = 70000;
    std::memset(setting.IPAddr, '8', sizeof setting.IPAddr);
    CCommData back;
    back.SetCommSetting(setting);
    QCOMPARE(int(back.m_nKind), 3);
    QCOMPARE(int(back.m_nPort), 70000 - 65536);
    QCOMPARE(back.m_strIPAddr.text, QString(64, QLatin1Char('8')));
    QCOMPARE(back.m_CommInfo.BaudRate, 19200);
}

void TestCommunication::renewalBookkeeping()
{
    CCommunication channel;
    CCommData data;
    data.m_nKind = CCommData::TcpServer;
    const qint64 now = QDateTime::currentMSecsSinceEpoch();

    // A time stamp in the future counts as now: nothing is old enough.
    data.m_nTime = now + 3600 * 1000;
    QCOMPARE(channel.CheckAndDelete(data, 0), 0);
    QVERIFY(qAbs(data.m_nTime - now) < 1000);

    // Old enough: DeleteComm runs; without a TCP attempt it only stamps the record.
    channel.SetSocket(nullptr);
    data.m_nTime = now - 10000;
    data.m_nSequence = 5;
    QCOMPARE(channel.CheckAndDelete(data, 0), 1);
    QVERIFY(channel.m_pTcpSock); // the link is kept while no TCP creation was attempted
    QCOMPARE(data.m_nSequence, -1);
    QVERIFY(data.m_nTime >= now);

    data.m_nTime = now - 9000; // not yet the 10,000 ms of the default period
    QCOMPARE(channel.CheckAndDelete(data, 0), 0);

    // Once a TCP creation was attempted the link goes and the record is stamped.
    data.m_nTcpOpened = 1;
    data.m_nSequence = 5;
    data.m_nTime = 0;
    channel.DeleteComm(data, 0);
    QVERIFY(!channel.m_pTcpSock);
    QCOMPARE(data.m_nSequence, -1);
    // With nothing left to destroy and the flag set, the record is left alone.
    data.m_nSequence = 6;
    data.m_nTime = 0;
    channel.DeleteComm(data, 0);
    QCOMPARE(data.m_nSequence, 6);
    QCOMPARE(data.m_nTime, qint64(0));
}

void TestCommunication::portSequence()
{
    CCommunication reset;
    const int first = CCommunication::GetLanPortSequence(5000, 0);
    QCOMPARE(first, 0);
    QCOMPARE(CCommunication::GetLanPortSequence(5000, 0), first);
    const int second = CCommunication::GetLanPortSequence(5000, 1);
    QCOMPARE(second, 1);
    QCOMPARE(CCommunication::GetLanPortSequence(5000, 1), 2);
    QCOMPARE(CCommunication::GetLanPortSequence(6000, 0), 3);
    QCOMPARE(CCommunication::GetLanPortSequence(5000, 0), 0);

    // A new channel forgets every entry.
    CCommunication another;
    QCOMPARE(CCommunication::GetLanPortSequence(6000, 0), 0);

    // A full table answers 0, like the first slot.
    for (int i = 1; i < 256; ++i)
        QCOMPARE(CCommunication::GetLanPortSequence(7000 + i, 1), i);
    QCOMPARE(CCommunication::GetLanPortSequence(9999, 1), 0);
    QCOMPARE(CCommunication::GetLanPortSequence(7255, 0), 255);
}

void TestCommunication::portSequenceConcurrent()
{
    CCommunication reset;
    // Standard threads: their join is a hand-over the thread sanitizer can see.
    std::vector<int> taken(64, -1);
    std::vector<std::thread> threads;
    QElapsedTimer timer;
    timer.start();
    for (int t = 0; t < 8; ++t)
        threads.emplace_back([&taken, t] {
            for (int i = 0; i < 8; ++i)
                taken[size_t(t * 8 + i)] = CCommunication::GetLanPortSequence(100 + t, 1);
        });
    for (std::thread &thread : threads)
        thread.join();
    // One caller at a time: each holds the table through its 10 ms pause.
    QVERIFY(timer.elapsed() >= 64 * 10);
    std::sort(taken.begin(), taken.end());
    for (int i = 0; i < 64; ++i)
        QCOMPARE(taken[size_t(i)], i); // every caller got its own entry
}

void TestCommunication::badInput()
{
    CCommunication channel;
    char buffer[8] = {};
    for (int kind = 0; kind <= 4; ++kind) {
        CCommData data;
        data.m_nKind = std::uint8_t(kind);
        QCOMPARE(int(channel.IsConnected(data)), 0);
        QCOMPARE(channel.ReadData(data, buffer, 8, 1), 0);
        QCOMPARE(channel.WriteData(data, buffer, 8), 0);
        QCOMPARE(channel.GetIPAddr(data), CString());
    }
    QCOMPARE(channel.GetCommInfo(nullptr), CString());

    CCommData unknown;
    unknown.m_nKind = 9;
    QCOMPARE(int(channel.CreateComm(unknown, 0, -1, 0)), 0);

    CCommData serial; // empty port name
    QCOMPARE(int(channel.CreateComm(serial, 0, -1, 0)), 0);
    QCOMPARE(channel.ReadData(serial, buffer, 8, 0), 0);

    MessageCapture capture;
    CCommData tcp;
    tcp.m_nKind = CCommData::TcpClient;
    tcp.m_strIPAddr = "999.1.1.1";
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(int(channel.CreateComm(tcp, 0, 80, 1)), 0);
    QCOMPARE(tcp.m_nTcpOpened, 1);
    tcp.m_strIPAddr = "127.0.0.1";
    QCOMPARE(int(channel.CreateComm(tcp, 0, 70000, 1)), 0);
    QVERIFY(timer.elapsed() < 1000);
    QCOMPARE(MessageCapture::lines().size(), 2);
    QVERIFY(MessageCapture::lines().at(0).endsWith(
        QStringLiteral("Create client sock error(IP = 999.1.1.1, port = 80)\r\n")));
    QVERIFY(MessageCapture::lines().at(1).endsWith(
        QStringLiteral("Create client sock error(IP = 127.0.0.1, port = 70000)\r\n")));
    QCOMPARE(channel.ReadData(tcp, buffer, 8, 1), 0);
}

QTEST_GUILESS_MAIN(TestCommunication)
#include "tst_communication.moc"
