// SPDX-License-Identifier: MIT
// The far end of the communication tests, run as a separate process.
//   commpeer echo             TCP server on 127.0.0.1: prints "port N", echoes every byte;
//                             a chunk starting with "RESET" is answered with "PART" and the
//                             connection is then reset (RST).
//   commpeer ping ADDRESS     prints "result R ms T" for PingCheck::Execute (run it inside
//                             a network namespace the test made).
//   commpeer broadcast PORT   inside a namespace: a CUdpSock broadcasts "hello" (null
//                             address) while a second socket listens on PORT; prints
//                             "sent N received M from A,B".
#include <Vantor.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QStringList>
#include <QTcpServer>
#include <QTcpSocket>
#include <QUdpSocket>

#include <sys/socket.h>

#include <cstdio>

static int echo(QCoreApplication &app)
{
    QTcpServer server;
    if (!server.listen(QHostAddress::LocalHost, 0))
        return 1;
    std::printf("port %d\n", int(server.serverPort()));
    std::fflush(stdout);
    QObject::connect(&server, &QTcpServer::newConnection, [&server] {
        while (QTcpSocket *socket = server.nextPendingConnection()) {
            QObject::connect(socket, &QTcpSocket::readyRead, socket, [socket] {
                const QByteArray data = socket->readAll();
                if (data.startsWith("RESET")) {
                    socket->write("PART");
                    socket->waitForBytesWritten(1000);
                    const linger hard {1, 0};
                    ::setsockopt(int(socket->socketDescriptor()), SOL_SOCKET, SO_LINGER, &hard,
                                 sizeof hard);
                    socket->abort();
                    socket->deleteLater();
                    return;
                }
                socket->write(data);
            });
            QObject::connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
        }
    });
    return app.exec();
}

static int ping(const QByteArray &address)
{
    QElapsedTimer timer;
    timer.start();
    const int result = PingCheck::Execute(address.constData());
    std::printf("result %d ms %lld\n", result, static_cast<long long>(timer.elapsed()));
    return 0;
}

static int broadcast(int port)
{
    QUdpSocket listener;
    if (!listener.bind(QHostAddress::AnyIPv4, quint16(port), QUdpSocket::ShareAddress))
        return 1;
    CUdpSock sender;
    if (!sender.CreateComm(port, 0, 0))
        return 1;
    const int sent = sender.WriteData(nullptr, "hello", 5, 0);
    QStringList from;
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < 1500) {
        if (!listener.hasPendingDatagrams()) {
            listener.waitForReadyRead(50);
            continue;
        }
        QByteArray data(int(listener.pendingDatagramSize()), '\0');
        QHostAddress address;
        listener.readDatagram(data.data(), data.size(), &address);
        if (data == "hello")
            from << address.toString();
    }
    std::printf("sent %d received %d from %s\n", sent, int(from.size()),
                from.join(QLatin1Char(',')).toLatin1().constData());
    return 0;
}

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    const QStringList args = app.arguments();
    const QString mode = args.value(1);
    if (mode == QLatin1String("echo"))
        return echo(app);
    if (mode == QLatin1String("ping") && args.size() > 2)
        return ping(args.at(2).toLatin1());
    if (mode == QLatin1String("broadcast") && args.size() > 2)
        return broadcast(args.at(2).toInt());
    return 2;
}
