// SPDX-License-Identifier: MIT
// The use case the channel exists for: polling a Modbus device. The device is Debian's
// pymodbus server (an outside implementation of the protocol), over TCP on loopback and over
// RTU on a socat pseudo-terminal; the frames are built and checked here, the RTU CRC with
// CCrc.
#include "commtest.h"

class TestModbus : public QObject
{
    Q_OBJECT

private slots:
    void tcpReadWriteRegisters();
    void rtuReadWriteRegisters();

private:
    bool startDevice(QProcess &device, const QStringList &args, int *port);
    /// Writes `request` and polls the channel until `size` bytes came (at most 3 s).
    static QByteArray exchange(CCommunication &channel, CCommData &data, QByteArray request,
                               int size);
    static QByteArray rtu(QByteArray pdu);
    static QByteArray mbap(quint16 transaction, const QByteArray &pdu);
};

static const char *const ModbusScript = VANTOR_TEST_SOURCE_DIR "/../support/modbus_device.py";

bool TestModbus::startDevice(QProcess &device, const QStringList &args, int *port)
{
    device.setProgram(QStringLiteral("/usr/bin/python3"));
    device.setArguments(QStringList {QString::fromLatin1(ModbusScript)} + args);
    device.start();
    if (!device.waitForStarted(5000))
        return false;
    QElapsedTimer timer;
    timer.start();
    while (!device.canReadLine() && device.state() == QProcess::Running && !timer.hasExpired(15000))
        device.waitForReadyRead(100);
    const QByteArray line = device.readLine().trimmed();
    if (!line.startsWith("ready "))
        return false;
    *port = line.mid(6).toInt();
    return true;
}

QByteArray TestModbus::exchange(CCommunication &channel, CCommData &data, QByteArray request,
                                int size)
{
    if (channel.WriteData(data, request.data(), request.size()) != request.size())
        return QByteArray();
    QByteArray reply;
    pollUntil(
        [&] {
            char buffer[64];
            const int want = qMin(int(sizeof buffer), size - reply.size());
            reply.append(buffer, channel.ReadData(data, buffer, want, 1));
            return reply.size() >= size;
        },
        3000);
    return reply;
}

QByteArray TestModbus::rtu(QByteArray pdu)
{
    pdu.prepend('\x01'); // unit 1
    const int crc =
        CCrc::GetCrc16_15_13_1(reinterpret_cast<unsigned char *>(pdu.data()), pdu.size());
    pdu.append(char(crc & 0xFF)).append(char(crc >> 8)); // low byte first on the wire
    return pdu;
}

QByteArray TestModbus::mbap(quint16 transaction, const QByteArray &pdu)
{
    QByteArray frame;
    frame.append(char(transaction >> 8)).append(char(transaction));
    frame.append('\0').append('\0');
    frame.append(char((pdu.size() + 1) >> 8)).append(char(pdu.size() + 1));
    frame.append('\x01').append(pdu);
    return frame;
}

static const QByteArray ReadFour("\x03\x00\x00\x00\x04", 5);   // registers 0..3
static const QByteArray WriteThird("\x06\x00\x02\x12\x34", 5); // register 2 = 0x1234
static const QByteArray FourBefore("\x03\x08\x00\x64\x00\x65\x00\x66\x00\x67", 10);
static const QByteArray FourAfter("\x03\x08\x00\x64\x00\x65\x12\x34\x00\x67", 10);

void TestModbus::tcpReadWriteRegisters()
{
    QProcess device;
    int port = 0;
    QVERIFY2(startDevice(device, {QStringLiteral("tcp")}, &port),
             "the pymodbus device (python3-pymodbus, /usr/bin/python3) did not start");
    CCommunication channel;
    CCommData data;
    data.m_nKind = CCommData::TcpClient;
    data.m_strIPAddr = "127.0.0.1";
    data.m_nPort = quint16(port);
    QVERIFY(channel.CreateComm(data, 0, -1, 0));

    QCOMPARE(exchange(channel, data, mbap(1, ReadFour), 7 + 10), mbap(1, FourBefore));
    QCOMPARE(exchange(channel, data, mbap(2, WriteThird), 7 + 5), mbap(2, WriteThird));
    QCOMPARE(exchange(channel, data, mbap(3, ReadFour), 7 + 10), mbap(3, FourAfter));
    channel.DeleteComm(data, 0);
    stopProcess(device);
}

void TestModbus::rtuReadWriteRegisters()
{
    SocatPair pair;
    QVERIFY2(pair.start(), "socat did not start");
    QProcess device;
    int port = -1;
    QVERIFY2(startDevice(device, {QStringLiteral("rtu"), pair.far}, &port),
             "the pymodbus device (python3-pymodbus, /usr/bin/python3) did not start");
    CCommunication channel;
    CCommData data;
    data.m_nKind = CCommData::Serial;
    const QByteArray name = pair.near.toLatin1();
    qstrncpy(data.m_CommInfo.PortName, name.constData(), sizeof data.m_CommInfo.PortName);
    QVERIFY(channel.CreateComm(data, 0, -1, 0));
    QCOMPARE(channel.GetCommInfoString(data).text,
             pair.near + QStringLiteral(", 9600, 8, 1, NONE"));

    QCOMPARE(exchange(channel, data, rtu(ReadFour), 3 + 10), rtu(FourBefore));
    QCOMPARE(exchange(channel, data, rtu(WriteThird), 8), rtu(WriteThird));
    const QByteArray reply = exchange(channel, data, rtu(ReadFour), 3 + 10);
    QCOMPARE(reply, rtu(FourAfter));
    // The device checks our CRC too: a frame with a wrong one gets no answer.
    QByteArray broken = rtu(ReadFour);
    broken[broken.size() - 1] = char(broken.at(broken.size() - 1) ^ 0x55);
    QCOMPARE(exchange(channel, data, broken, 13), QByteArray());
    channel.DeleteComm(data, 0);
    QVERIFY(!channel.m_pSerialComm);
    stopProcess(device);
}

QTEST_GUILESS_MAIN(TestModbus)
#include "tst_modbus.moc"
