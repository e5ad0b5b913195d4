// SPDX-License-Identifier: MIT
// CUdpSock and the channel's UDP kind: loopback datagrams, and the broadcast form inside a
// network namespace the test makes (never on the machine's own interfaces).
#include "commtest.h"

#include <QUdpSocket>

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

class TestUdpSock : public QObject
{
    Q_OBJECT

private slots:
    void oneDatagramPerRead();
    void senderAddress();
    void defaultDestinations();
    void badDestinations();
    void createTwiceClosesFirst();
    void channelAnswersItself();
    void broadcastInNamespace();

private:
    /// Polls `sock` until a datagram comes (at most 3 s); returns it.
    static QByteArray nextDatagram(CUdpSock &sock, int size = 256);
};

QByteArray TestUdpSock::nextDatagram(CUdpSock &sock, int size)
{
    QByteArray buffer(size, '\0');
    int n = 0;
    pollUntil([&] { return (n = sock.ReadData(buffer.data(), size, 0)) > 0; }, 3000);
    return buffer.left(n);
}

void TestUdpSock::oneDatagramPerRead()
{
    CUdpSock sock;
    QCOMPARE(int(sock.CreateComm(0, 0, 0)), 1);
    QVERIFY(sock.m_nPort > 0);
    QUdpSocket sender;
    sender.writeDatagram("0123456789ABCDEFGHIJ", QHostAddress::LocalHost, quint16(sock.m_nPort));
    sender.writeDatagram("tail!", QHostAddress::LocalHost, quint16(sock.m_nPort));
    QCOMPARE(nextDatagram(sock, 8), QByteArray("01234567"));
    QCOMPARE(nextDatagram(sock), QByteArray("tail!")); // the other 12 bytes are gone
    char buffer[4];
    QCOMPARE(sock.ReadData(buffer, 4, 0), 0); // nothing pending: at once
}

void TestUdpSock::senderAddress()
{
    CUdpSock sock;
    QVERIFY(sock.CreateComm(0, 0, 0));
    QUdpSocket sender;
    QVERIFY(sender.bind(QHostAddress(QStringLiteral("127.1.2.3")), 0));
    sender.writeDatagram("x", QHostAddress::LocalHost, quint16(sock.m_nPort));
    QCOMPARE(nextDatagram(sock), QByteArray("x"));
    QCOMPARE(sock.GetIPAddr(), CString("127.1.2.3"));
}

void TestUdpSock::defaultDestinations()
{
    CUdpSock sock;
    QVERIFY(sock.CreateComm(0, 0, 0));
    // Empty address: 127.0.0.1; port 0: the bound port, i.e. this socket itself.
    QCOMPARE(sock.WriteData("", "self", 4, 0), 4);
    QCOMPARE(nextDatagram(sock), QByteArray("self"));
    QCOMPARE(sock.GetIPAddr(), CString("127.0.0.1"));

    QUdpSocket listener;
    QVERIFY(listener.bind(QHostAddress(QHostAddress::LocalHost), 0));
    QCOMPARE(sock.WriteData("127.0.0.1", "there", 5, listener.localPort()), 5);
    QVERIFY(pollUntil([&] { return listener.hasPendingDatagrams(); }, 3000));
    QByteArray got(16, '\0');
    got.resize(int(listener.readDatagram(got.data(), got.size())));
    QCOMPARE(got, QByteArray("there"));
}

void TestUdpSock::badDestinations()
{
    CUdpSock unbound;
    QCOMPARE(unbound.WriteData("127.0.0.1", "x", 1, 5000), 0);
    char buffer[4];
    QCOMPARE(unbound.ReadData(buffer, 4, 0), 0);

    CUdpSock sock;
    QCOMPARE(int(sock.CreateComm(70000, 0, 0)), 0);
    QVERIFY(!sock.m_pSocket);
    QCOMPARE(int(sock.CreateComm(-1, 0, 0)), 0);
    QVERIFY(sock.CreateComm(0, 0, 0));
    QCOMPARE(sock.WriteData("not.an.address", "x", 1, 0), 0);
    QCOMPARE(sock.WriteData("300.1.1.1", "x", 1, 0), 0);
    QCOMPARE(sock.ReadData(buffer, 4, 0), 0); // nothing went anywhere
}

void TestUdpSock::createTwiceClosesFirst()
{
    CUdpSock sock;
    QVERIFY(sock.CreateComm(0, 0, 0));
    const int first = sock.m_nPort;
    QUdpSocket sender;
    sender.writeDatagram("pending", QHostAddress::LocalHost, quint16(first));
    QThread::msleep(20);
    QVERIFY(sock.CreateComm(0, 0, 0));
    QVERIFY(sock.m_nPort != first);
    // The first socket is gone: an exclusive bind of its port succeeds.
    const int fd = ::socket(AF_INET, SOCK_DGRAM, 0);
    QVERIFY(fd >= 0);
    sockaddr_in address {};
    address.sin_family = AF_INET;
    address.sin_port = htons(quint16(first));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    const int bound = ::bind(fd, reinterpret_cast<sockaddr *>(&address), sizeof address);
    ::close(fd);
    QCOMPARE(bound, 0);
}

void TestUdpSock::channelAnswersItself()
{
    QUdpSocket probe; // a free port for the record
    QVERIFY(probe.bind(QHostAddress(QHostAddress::LocalHost), 0));
    const quint16 port = probe.localPort();
    probe.close();

    CCommunication channel;
    CCommData data;
    data.m_nKind = CCommData::Udp;
    data.m_strIPAddr = "127.0.0.1";
    data.m_nPort = port;
    QCOMPARE(channel.GetIPAddr(data), CString());
    QCOMPARE(int(channel.CreateComm(data, 0, -1, 0)), 1);
    QCOMPARE(channel.m_pUdpSock->m_nPort, int(port));
    char frame[] = "datagram";
    QCOMPARE(channel.WriteData(data, frame, 8), 8);
    char buffer[16];
    int n = 0;
    QVERIFY(pollUntil([&] { return (n = channel.ReadData(data, buffer, 16, 0)) > 0; }, 3000));
    QCOMPARE(QByteArray(buffer, n), QByteArray("datagram"));
    QCOMPARE(channel.GetIPAddr(data), CString("127.0.0.1"));
    channel.DeleteComm(data, 0);
    QVERIFY(!channel.m_pUdpSock);
    QCOMPARE(channel.ReadData(data, buffer, 16, 0), 0);
}

void TestUdpSock::broadcastInNamespace()
{
    const QString reason = namespaceUnavailable();
    if (!reason.isEmpty())
        QSKIP(qPrintable(reason));
    const QByteArray out =
        runPeerInNamespace(vethSetup(), {QStringLiteral("broadcast"), QStringLiteral("47001")});
    QVERIFY2(out.startsWith("sent 5 received "), out.constData());
    const QList<QByteArray> words = out.split(' ');
    QVERIFY2(words.value(3).toInt() >= 1, out.constData());
    QVERIFY2(words.value(5).startsWith("10.78.0."), out.constData());
}

QTEST_GUILESS_MAIN(TestUdpSock)
#include "tst_udpsock.moc"
