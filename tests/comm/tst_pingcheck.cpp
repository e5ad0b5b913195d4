// SPDX-License-Identifier: MIT
// PingCheck: a real echo on loopback, and the failures inside network namespaces the test
// makes (loopback down; an address nobody answers).
#include "commtest.h"

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

class TestPingCheck : public QObject
{
    Q_OBJECT

private slots:
    void loopbackAnswers();
    void unconvertibleAddress_data();
    void unconvertibleAddress();
    void inNamespace_data();
    void inNamespace();
};

static bool canSendIcmp()
{
    for (int type : {SOCK_DGRAM, SOCK_RAW}) {
        const int fd = ::socket(AF_INET, type, IPPROTO_ICMP);
        if (fd >= 0) {
            ::close(fd);
            return true;
        }
    }
    return false;
}

void TestPingCheck::loopbackAnswers()
{
    if (!canSendIcmp())
        QSKIP("neither an ICMP datagram socket (ping_group_range) nor a raw socket "
              "(CAP_NET_RAW) is allowed for this user");
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(int(PingCheck::Execute("127.0.0.1")), 1);
    QVERIFY(timer.elapsed() < 1000);
    QCOMPARE(int(PingCheck::Execute("127.0.0.1")), 1); // a second echo matches its own reply
}

void TestPingCheck::unconvertibleAddress_data()
{
    QTest::addColumn<QByteArray>("address");
    QTest::newRow("empty") << QByteArray("");
    QTest::newRow("name") << QByteArray("localhost");
    QTest::newRow("octet too large") << QByteArray("127.0.0.256");
}

void TestPingCheck::unconvertibleAddress()
{
    QFETCH(QByteArray, address);
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(int(PingCheck::Execute(address.constData())), 0);
    QVERIFY(timer.elapsed() < 100);
    QCOMPARE(int(PingCheck::Execute(nullptr)), 0);
}

void TestPingCheck::inNamespace_data()
{
    QTest::addColumn<QString>("setup");
    QTest::addColumn<QString>("address");
    QTest::addColumn<int>("result");
    QTest::addColumn<int>("minMs");
    QTest::addColumn<int>("maxMs");
    QTest::addColumn<QString>("wrapper");
    const QString lo = QStringLiteral("ip link set lo up && ");
    const QString none;
    QTest::newRow("loopback down: at once") << none << "127.0.0.1" << 0 << 0 << 200 << none;
    QTest::newRow("nobody answers: the whole second")
        << vethSetup() << "10.78.0.9" << 0 << 950 << 1600 << none;
    // The raw socket sees our own request on loopback: it is not an answer.
    QTest::newRow("echo ignored") << lo +
            QStringLiteral("echo 1 > /proc/sys/net/ipv4/icmp_echo_ignore_all && ")
                                  << "127.0.0.1" << 0 << 950 << 1600 << none;
    // Without CAP_NET_RAW only the datagram socket can work; the group range admits it.
    QTest::newRow("datagram socket")
        << lo + QStringLiteral("echo '0 0' > /proc/sys/net/ipv4/ping_group_range && ")
        << "127.0.0.1" << 1 << 0 << 1000 << QStringLiteral("setpriv --bounding-set -net_raw");
    QTest::newRow("neither socket allowed")
        << lo << "127.0.0.1" << 0 << 0 << 200 << QStringLiteral("setpriv --bounding-set -net_raw");
}

void TestPingCheck::inNamespace()
{
    QFETCH(QString, setup);
    QFETCH(QString, address);
    QFETCH(int, result);
    QFETCH(int, minMs);
    QFETCH(int, maxMs);
    QFETCH(QString, wrapper);
    const QString reason = namespaceUnavailable();
    if (!reason.isEmpty())
        QSKIP(qPrintable(reason));
    const QByteArray out = runPeerInNamespace(setup, {QStringLiteral("ping"), address}, wrapper);
    const QList<QByteArray> words = out.split(' ');
    QVERIFY2(words.size() == 4 && words[0] == "result", out.constData());
    QCOMPARE(words[1].toInt(), result);
    const int ms = words[3].toInt();
    QVERIFY2(ms >= minMs && ms <= maxMs, out.constData());
}

QTEST_GUILESS_MAIN(TestPingCheck)
#include "tst_pingcheck.moc"
