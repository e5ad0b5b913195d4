// SPDX-License-Identifier: MIT
// CTcpSock and the channel's TCP kinds against a real peer process on loopback.
#include "commtest.h"

#include <QRegularExpression>
#include <QTcpServer>
#include <QTcpSocket>

class TestTcpSock : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void checkIp_data();
    void checkIp();
    void connectWriteEcho();
    void bufferServesBeforeSocket();
    void bufferSurvivesReconnect();
    void refusedConnections_data();
    void refusedConnections();
    void peerResetsMidStream();
    void channelRenewsAfterPeriod();
    void channelUsesAcceptedSocket();

private:
    /// Reads from `sock` until `count` bytes came or 3 s passed.
    static QByteArray readAtLeast(CTcpSock &sock, int count);

    QProcess m_peer;
    int m_nPort = 0;
};

void TestTcpSock::initTestCase()
{
    const QByteArray line = startPeer(m_peer, {QStringLiteral("echo")});
    QVERIFY2(line.startsWith("port "), line.constData());
    m_nPort = line.mid(5).toInt();
    QVERIFY(m_nPort > 0);
}

void TestTcpSock::cleanupTestCase()
{
    stopProcess(m_peer);
}

QByteArray TestTcpSock::readAtLeast(CTcpSock &sock, int count)
{
    QByteArray got;
    pollUntil(
        [&] {
            char buffer[256];
            const int n = sock.ReadData(buffer, sizeof buffer, 0);
            got.append(buffer, n);
            return got.size() >= count;
        },
        3000);
    return got;
}

void TestTcpSock::checkIp_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("accepted");
    QTest::newRow("plain") << QByteArray("192.168.0.1") << 1;
    QTest::newRow("octets not range-checked") << QByteArray("300.300.300.300") << 1;
    QTest::newRow("only points") << QByteArray("...") << 1;
    QTest::newRow("empty") << QByteArray("") << 0;
    QTest::newRow("letters") << QByteArray("abc") << 0;
    QTest::newRow("two points") << QByteArray("1.2.3") << 0;
    QTest::newRow("four points") << QByteArray("1.2.3.4.5") << 0;
}

void TestTcpSock::checkIp()
{
    QFETCH(QByteArray, text);
    QFETCH(int, accepted);
    QCOMPARE(int(CTcpSock::CheckIp(text.constData())), accepted);
}

void TestTcpSock::connectWriteEcho()
{
    MessageCapture capture;
    CTcpSock sock;
    QCOMPARE(int(sock.CreateComm("127.0.0.1", m_nPort, true)), 1);
    QVERIFY(sock.IsConnected());
    QCOMPARE(MessageCapture::lines().size(), 1);
    const QRegularExpression stamp(
        QStringLiteral(
            "^\r\n\\[\\d{4}/\\d\\d/\\d\\d \\d\\d:\\d\\d:\\d\\d\\.\\d{3}\\] Create client sock "
            "succeed\\(IP = 127\\.0\\.0\\.1, port = %1\\)\r\n$")
            .arg(m_nPort));
    QVERIFY2(stamp.match(MessageCapture::lines().constFirst()).hasMatch(),
             qPrintable(MessageCapture::lines().constFirst()));

    QByteArray frame(100, '\0');
    for (int i = 0; i < frame.size(); ++i)
        frame[i] = char(i * 7);
    QCOMPARE(sock.WriteData(frame.data(), frame.size()), 100);
    QCOMPARE(readAtLeast(sock, 100), frame);

    sock.DeleteComm();
    QVERIFY(!sock.m_pSocket);
    QVERIFY(!sock.IsConnected());
    QCOMPARE(MessageCapture::lines().size(), 2);
    QVERIFY(MessageCapture::lines().at(1).endsWith(QStringLiteral("] Delete Client Sock\r\n")));
}

void TestTcpSock::bufferServesBeforeSocket()
{
    CTcpSock sock;
    QVERIFY(sock.CreateComm("127.0.0.1", m_nPort, false));
    const QByteArray first = "abcdefghijklmnopqrstuvwxy"; // 25 bytes
    sock.WriteData(const_cast<char *>(first.constData()), first.size());
    QVERIFY(waitForBytes(sock.m_pSocket, 25, 3000));

    char buffer[10];
    QCOMPARE(sock.ReadData(buffer, 10, 0), 10);
    QCOMPARE(QByteArray(buffer, 10), first.left(10));
    // New bytes waiting in the socket are not taken while the buffer still holds some.
    sock.WriteData(const_cast<char *>("12345"), 5);
    QVERIFY(waitForBytes(sock.m_pSocket, 5, 3000));
    QCOMPARE(sock.ReadData(buffer, 10, 0), 10);
    QCOMPARE(QByteArray(buffer, 10), first.mid(10, 10));
    QCOMPARE(sock.ReadData(buffer, 10, 0), 5);
    QCOMPARE(QByteArray(buffer, 5), first.mid(20));
    QCOMPARE(sock.ReadData(buffer, 10, 0), 5);
    QCOMPARE(QByteArray(buffer, 5), QByteArray("12345"));
    QCOMPARE(sock.ReadData(buffer, 10, 0), 0);
}

void TestTcpSock::bufferSurvivesReconnect()
{
    CTcpSock sock;
    sock.m_nMessage = 0;
    QVERIFY(sock.CreateComm("127.0.0.1", m_nPort, false));
    sock.WriteData(const_cast<char *>("0123456789ABCDE"), 15);
    char buffer[10];
    QVERIFY(pollUntil([&] { return sock.ReadData(buffer, 4, 0) == 4; }, 3000));
    QCOMPARE(QByteArray(buffer, 4), QByteArray("0123"));
    sock.DeleteComm();
    QCOMPARE(sock.ReadData(buffer, 10, 0), 0); // not connected: nothing, even from the buffer
    QVERIFY(sock.CreateComm("127.0.0.1", m_nPort, false));
    QCOMPARE(readAtLeast(sock, 11), QByteArray("456789ABCDE"));
}

void TestTcpSock::refusedConnections_data()
{
    QTest::addColumn<QByteArray>("ip");
    QTest::addColumn<int>("port"); // -2: a loopback port nobody listens on
    QTest::newRow("nobody listens") << QByteArray("127.0.0.1") << -2;
    QTest::newRow("port above 16 bits") << QByteArray("127.0.0.1") << 65536 + 1;
    QTest::newRow("negative port") << QByteArray("127.0.0.1") << -5;
    QTest::newRow("not an address") << QByteArray("no.such.host") << 80;
    QTest::newRow("empty address") << QByteArray("") << 80;
}

void TestTcpSock::refusedConnections()
{
    QFETCH(QByteArray, ip);
    QFETCH(int, port);
    if (port == -2) {
        QTcpServer probe;
        QVERIFY(probe.listen(QHostAddress::LocalHost, 0));
        port = probe.serverPort();
    }
    MessageCapture capture;
    CTcpSock sock;
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(int(sock.CreateComm(ip.constData(), port, true)), 0);
    QVERIFY(timer.elapsed() < 3500);
    QVERIFY(!sock.m_pSocket);
    QVERIFY(!sock.IsConnected());
    QCOMPARE(MessageCapture::lines().size(), 1);
    QVERIFY(MessageCapture::lines().constFirst().endsWith(
        QStringLiteral("] Create client sock error(IP = %1, port = %2)\r\n")
            .arg(QString::fromLatin1(ip))
            .arg(port)));
    char buffer[4];
    QCOMPARE(sock.ReadData(buffer, 4, 0), 0);
    QCOMPARE(sock.WriteData(buffer, 4), 0);
    QCOMPARE(sock.WriteData(nullptr, buffer, 4), 0);
    QCOMPARE(int(sock.CreateComm(nullptr, "127.0.0.1", m_nPort, 0)), 0);
}

void TestTcpSock::peerResetsMidStream()
{
    CTcpSock sock;
    sock.m_nMessage = 0;
    QVERIFY(sock.CreateComm("127.0.0.1", m_nPort, false));
    QCOMPARE(sock.WriteData(const_cast<char *>("RESET now"), 9), 9);
    char buffer[16];
    QVERIFY(pollUntil(
        [&] {
            sock.ReadData(buffer, sizeof buffer, 0);
            return !sock.IsConnected();
        },
        3000));
    QCOMPARE(sock.ReadData(buffer, sizeof buffer, 0), 0);
    QCOMPARE(sock.WriteData(buffer, 3), 3); // the optimistic result, even on a dead link
    sock.DeleteComm();
    QVERIFY(!sock.m_pSocket);
}

void TestTcpSock::channelRenewsAfterPeriod()
{
    MessageCapture capture;
    CCommunication channel;
    CCommData data;
    data.m_nKind = CCommData::TcpClient;
    data.m_strIPAddr = "127.0.0.1";
    data.m_nPort = quint16(m_nPort);
    data.m_nRenewalPeriod = 400;
    QCOMPARE(int(channel.CreateComm(data, 0, -1, 1)), 1);
    QCOMPARE(data.m_nTcpOpened, 1);
    QVERIFY(qAbs(data.m_nTime - QDateTime::currentMSecsSinceEpoch()) < 1000);
    const quint16 firstPort = channel.m_pTcpSock->m_pSocket->localPort();

    // Within the period the link is kept as it is.
    QCOMPARE(int(channel.CreateComm(data, 0, -1, 1)), 1);
    QCOMPARE(channel.m_pTcpSock->m_pSocket->localPort(), firstPort);
    QCOMPARE(MessageCapture::lines().size(), 1);

    QThread::msleep(500);
    QCOMPARE(int(channel.CreateComm(data, 0, -1, 1)), 1);
    QVERIFY(channel.m_pTcpSock->m_pSocket->localPort() != firstPort);
    QCOMPARE(MessageCapture::lines().size(), 3);
    QVERIFY(MessageCapture::lines().at(1).endsWith(QStringLiteral("] Delete Client Sock\r\n")));
    QVERIFY(MessageCapture::lines().at(2).contains(QStringLiteral("succeed")));

    char frame[] = "ping";
    QCOMPARE(channel.WriteData(data, frame, 4), 4);
    QByteArray got;
    pollUntil(
        [&] {
            char buffer[8];
            got.append(buffer, channel.ReadData(data, buffer, sizeof buffer, 1));
            return got.size() >= 4;
        },
        3000);
    QCOMPARE(got, QByteArray("ping"));

    channel.DeleteComm(data, 0);
    QVERIFY(!channel.m_pTcpSock);
    QCOMPARE(data.m_nSequence, -1);
    QCOMPARE(channel.ReadData(data, frame, 4, 1), 0);
    QCOMPARE(channel.WriteData(data, frame, 4), 0);
}

void TestTcpSock::channelUsesAcceptedSocket()
{
    QTcpServer server;
    QVERIFY(server.listen(QHostAddress::LocalHost, 0));
    QTcpSocket client;
    client.connectToHost(QHostAddress::LocalHost, server.serverPort());
    QVERIFY(client.waitForConnected(3000));
    QVERIFY(server.waitForNewConnection(3000));
    QTcpSocket *accepted = server.nextPendingConnection();
    accepted->setParent(nullptr); // the channel owns it from now on

    CCommunication channel;
    channel.SetSocket(accepted);
    CCommData data;
    data.m_nKind = CCommData::TcpServer;
    data.m_nPort = server.serverPort();
    QCOMPARE(int(channel.CreateComm(data, 0, -1, 0)), 1);
    QCOMPARE(channel.m_pTcpSock->m_pSocket, accepted); // kept, not reconnected
    QCOMPARE(data.m_nTcpOpened, 0);

    client.write("hello");
    client.waitForBytesWritten(1000);
    QByteArray got;
    pollUntil(
        [&] {
            char buffer[8];
            got.append(buffer, channel.ReadData(data, buffer, sizeof buffer, 1));
            return got.size() >= 5;
        },
        3000);
    QCOMPARE(got, QByteArray("hello"));
    char reply[] = "world";
    QCOMPARE(channel.WriteData(data, reply, 5), 5);
    QVERIFY(waitForBytes(&client, 5, 3000));
    QCOMPARE(client.readAll(), QByteArray("world"));

    // The renewal does not drop a handed-in connection: no TCP creation was ever attempted.
    data.m_nTime = 1;
    QCOMPARE(int(channel.CreateComm(data, 0, -1, 0)), 1);
    QCOMPARE(channel.m_pTcpSock->m_pSocket, accepted);
}

QTEST_GUILESS_MAIN(TestTcpSock)
#include "tst_tcpsock.moc"
