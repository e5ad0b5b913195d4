// SPDX-License-Identifier: MIT
// CSerialInfo and CSerialComm over a socat pseudo-terminal pair whose far end the test drives.
#include "commtest.h"

#include <QSerialPort>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <cstring>

class TestSerialComm : public QObject
{
    Q_OBJECT

private slots:
    void settingsText_data();
    void settingsText();
    void positions();
    void settingsOnPort_data();
    void settingsOnPort();
    void missingDevice();
    void timedReadLeavesRest();
    void bufferedReadAndWrite();
    void farEndVanishesMidRead();

private:
    /// Opens the pair and returns the far end's descriptor (or -1).
    int openFar(SocatPair &pair);
    static CommInfo record(const QString &port);
};

CommInfo TestSerialComm::record(const QString &port)
{
    CommInfo info;
    CSerialInfo::Init(info);
    const QByteArray name = port.toLatin1();
    std::memcpy(info.PortName, name.constData(), size_t(qMin(name.size(), 63)));
    return info;
}

int TestSerialComm::openFar(SocatPair &pair)
{
    if (!pair.start())
        return -1;
    return ::open(QFile::encodeName(pair.far).constData(), O_RDWR | O_NOCTTY | O_NONBLOCK);
}

void TestSerialComm::settingsText_data()
{
    QTest::addColumn<int>("baud");
    QTest::addColumn<int>("stop");
    QTest::addColumn<int>("parity");
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("stopAfter");
    QTest::newRow("defaults") << 9600 << 1 << 0 << "COM1, 9600, 8, 1, NONE" << 1;
    QTest::newRow("stop 0 shown and kept as 1") << 9600 << 0 << 0 << "COM1, 9600, 8, 1, NONE" << 1;
    QTest::newRow("one and a half, odd") << 19200 << 2 << 1 << "COM1, 19200, 8, 1.5, ODD" << 2;
    QTest::newRow("two, even") << 115200 << 3 << 2 << "COM1, 115200, 8, 2, EVEN" << 3;
    QTest::newRow("mark") << 9600 << 1 << 3 << "COM1, 9600, 8, 1, MARK" << 1;
    QTest::newRow("space") << 9600 << 1 << 4 << "COM1, 9600, 8, 1, SPACE" << 1;
    QTest::newRow("codes out of range") << 9600 << 9 << 200 << "COM1, 9600, 8, 1, NONE" << 9;
}

void TestSerialComm::settingsText()
{
    QFETCH(int, baud);
    QFETCH(int, stop);
    QFETCH(int, parity);
    QFETCH(QString, text);
    QFETCH(int, stopAfter);
    CommInfo info = record(QStringLiteral("COM1"));
    info.BaudRate = baud;
    info.StopBits = std::uint8_t(stop);
    info.Parity = std::uint8_t(parity);
    QCOMPARE(CSerialInfo::GetString(info).text, text);
    QCOMPARE(int(info.StopBits), stopAfter);
}

void TestSerialComm::positions()
{
    // Init leaves nothing behind in the name or the flow byte.
    CommInfo info;
    std::memset(&info, 0x5A, sizeof info);
    CSerialInfo::Init(info);
    QCOMPARE(CSerialInfo::GetString(info).text, QStringLiteral(", 9600, 8, 1, NONE"));
    QCOMPARE(int(info.FlowControl), 0);

    // A name filling all 64 bytes is read to its end and no further.
    std::memset(info.PortName, 'x', sizeof info.PortName);
    info.BaudRate = 4800;
    QCOMPARE(CSerialInfo::GetString(info).text,
             QString(64, QLatin1Char('x')) + QStringLiteral(", 4800, 8, 1, NONE"));

    QCOMPARE(CSerialComm::GetBaudRatePos(110), 0);
    QCOMPARE(CSerialComm::GetBaudRatePos(115200), 9);
    QCOMPARE(CSerialComm::GetBaudRatePos(921600), 12);
    QCOMPARE(CSerialComm::GetBaudRatePos(14400), 5);
    QCOMPARE(CSerialComm::GetDataBitPos(7), 1);
    QCOMPARE(CSerialComm::GetStopBitPos(2), 1);
}

void TestSerialComm::settingsOnPort_data()
{
    QTest::addColumn<int>("baud");
    QTest::addColumn<int>("stop");
    QTest::addColumn<int>("parity");
    QTest::addColumn<int>("flow");
    QTest::addColumn<int>("qtStop");
    QTest::addColumn<int>("qtParity");
    QTest::addColumn<int>("qtFlow");
    QTest::newRow("defaults") << 9600 << 1 << 0 << 0 << int(QSerialPort::OneStop)
                              << int(QSerialPort::NoParity) << int(QSerialPort::NoFlowControl);
    QTest::newRow("stop 0 as one") << 19200 << 0 << 0 << 0 << int(QSerialPort::OneStop)
                                   << int(QSerialPort::NoParity) << int(QSerialPort::NoFlowControl);
    QTest::newRow("two stops, odd, software")
        << 115200 << 3 << 1 << 2 << int(QSerialPort::TwoStop) << int(QSerialPort::OddParity)
        << int(QSerialPort::SoftwareControl);
    QTest::newRow("mark, hardware")
        << 57600 << 1 << 3 << 1 << int(QSerialPort::OneStop) << int(QSerialPort::MarkParity)
        << int(QSerialPort::HardwareControl);
    QTest::newRow("space") << 4800 << 1 << 4 << 0 << int(QSerialPort::OneStop)
                           << int(QSerialPort::SpaceParity) << int(QSerialPort::NoFlowControl);
    QTest::newRow("codes out of range fall back")
        << 9600 << 7 << 9 << 5 << int(QSerialPort::OneStop) << int(QSerialPort::NoParity)
        << int(QSerialPort::NoFlowControl);
}

void TestSerialComm::settingsOnPort()
{
    QFETCH(int, baud);
    QFETCH(int, stop);
    QFETCH(int, parity);
    QFETCH(int, flow);
    QFETCH(int, qtStop);
    QFETCH(int, qtParity);
    QFETCH(int, qtFlow);
    SocatPair pair;
    QVERIFY2(pair.start(), "socat did not start");
    CommInfo info = record(pair.near);
    info.BaudRate = baud;
    info.StopBits = std::uint8_t(stop);
    info.Parity = std::uint8_t(parity);
    info.FlowControl = std::uint8_t(flow);
    MessageCapture capture;
    CSerialComm port;
    QCOMPARE(port.CreateComm(info, true), 1);
    QVERIFY(port.IsConnected());
    QCOMPARE(MessageCapture::lines(),
             QStringList {QStringLiteral("Serial port open OK : %1\r\n").arg(pair.near)});
    QCOMPARE(int(port.m_pPort->baudRate(QSerialPort::Input)), baud);
    QCOMPARE(int(port.m_pPort->baudRate(QSerialPort::Output)), baud);
    QCOMPARE(int(port.m_pPort->dataBits()), 8);
    QCOMPARE(int(port.m_pPort->stopBits()), qtStop);
    QCOMPARE(int(port.m_pPort->parity()), qtParity);
    QCOMPARE(int(port.m_pPort->flowControl()), qtFlow);
    if (stop == 0)
        QCOMPARE(int(info.StopBits), 1);
    port.DeleteComm(0);
    QVERIFY(!port.IsConnected());
}

void TestSerialComm::missingDevice()
{
    QTemporaryDir dir;
    MessageCapture capture;
    CSerialComm port;
    CommInfo info = record(dir.filePath(QStringLiteral("ttyMissing")));
    QCOMPARE(port.CreateComm(info, true), 0);
    QVERIFY(!port.IsConnected());
    QCOMPARE(MessageCapture::lines(),
             QStringList {QStringLiteral("Serial port open error : %1\r\n")
                              .arg(dir.filePath(QStringLiteral("ttyMissing")))});
    // A name without its terminating NUL: 64 bytes are read, the baud rate after them not.
    std::memset(info.PortName, 'y', sizeof info.PortName);
    QCOMPARE(port.CreateComm(info, false), 0);
    QCOMPARE(port.m_pPort->portName(), QString(64, QLatin1Char('y')));
    char buffer[4];
    QCOMPARE(port.ReadData(buffer, 4), 0);
    QCOMPARE(port.ReadData(buffer, 4, 1), 0);
    QCOMPARE(port.WriteData("ab", 2), -1);
}

void TestSerialComm::timedReadLeavesRest()
{
    SocatPair pair;
    const int far = openFar(pair);
    QVERIFY2(far >= 0, "socat pair not available");
    CSerialComm port;
    CommInfo info = record(pair.near);
    QVERIFY(port.CreateComm(info, false));
    QCOMPARE(::write(far, "0123456789", 10), ssize_t(10));

    char buffer[16] = {};
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(port.ReadData(buffer, 4, 3), 4);
    QVERIFY(timer.elapsed() < 2000);
    QCOMPARE(QByteArray(buffer, 4), QByteArray("0123"));
    QCOMPARE(port.ReadData(buffer, 4, 0), 0); // a time-out of 0 reads nothing

    QByteArray rest;
    pollUntil(
        [&] {
            rest.append(buffer, port.ReadData(buffer, sizeof buffer));
            return rest.size() >= 6;
        },
        3000);
    QCOMPARE(rest, QByteArray("456789"));
    ::close(far);
}

void TestSerialComm::bufferedReadAndWrite()
{
    SocatPair pair;
    const int far = openFar(pair);
    QVERIFY2(far >= 0, "socat pair not available");
    CSerialComm port;
    CommInfo info = record(pair.near);
    QVERIFY(port.CreateComm(info, false));

    QCOMPARE(port.WriteData("hello", 5), 5);
    QCOMPARE(port.WriteByte('!'), 1);
    QByteArray seen;
    pollUntil(
        [&] {
            char chunk[16];
            const ssize_t n = ::read(far, chunk, sizeof chunk);
            if (n > 0)
                seen.append(chunk, int(n));
            return seen.size() >= 6;
        },
        3000);
    QCOMPARE(seen, QByteArray("hello!"));

    QCOMPARE(::write(far, "abcdefghijkl", 12), ssize_t(12));
    QVERIFY(waitForBytes(port.m_pPort, 12, 3000));
    char buffer[5];
    QCOMPARE(port.ReadData(buffer, 5), 5);
    QCOMPARE(QByteArray(buffer, 5), QByteArray("abcde"));
    unsigned char byte = 0;
    QCOMPARE(port.ReadByte(byte), 0); // the port itself is empty: all of it went to the buffer
    QCOMPARE(port.ReadData(buffer, 5), 5);
    QCOMPARE(port.ReadData(buffer, 5), 2);
    QCOMPARE(QByteArray(buffer, 2), QByteArray("kl"));
    ::close(far);
}

void TestSerialComm::farEndVanishesMidRead()
{
    SocatPair pair;
    const int far = openFar(pair);
    QVERIFY2(far >= 0, "socat pair not available");
    const QString near = pair.near;
    QAtomicInt opened(0);
    int count = -1;
    qint64 elapsed = -1;
    QByteArray got;
    QThread *reader = QThread::create([&] {
        CSerialComm port;
        CommInfo info = record(near);
        if (!port.CreateComm(info, false))
            return;
        opened = 1;
        char buffer[10];
        QElapsedTimer timer;
        timer.start();
        count = port.ReadData(buffer, 10, 3);
        elapsed = timer.elapsed();
        got = QByteArray(buffer, qMax(0, count));
        port.ReadData(buffer, 10); // must not crash on the dead port either
    });
    reader->start();
    QVERIFY(pollUntil([&] { return opened.loadAcquire() == 1; }, 5000));
    QCOMPARE(::write(far, "abc", 3), ssize_t(3));
    QThread::msleep(300);
    stopProcess(pair.process); // socat ends: both pseudo-terminals go away mid-read
    const bool finished = reader->wait(8000);
    QVERIFY2(finished, "the reader hung after the far end vanished");
    delete reader;
    ::close(far);
    QCOMPARE(count, 3);
    QCOMPARE(got, QByteArray("abc"));
    QVERIFY(elapsed < 4500);
}

QTEST_GUILESS_MAIN(TestSerialComm)
#include "tst_serialcomm.moc"
