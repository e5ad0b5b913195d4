// SPDX-License-Identifier: MIT
#include "CTcpSock.h"

#include "CTimeEx.h"
#include "PrintMessage.h"

#include <QElapsedTimer>
#include <QHostAddress>
#include <QTcpSocket>

#include <cstring>

namespace {

CString timeString()
{
    return CTimeEx().GetTimeString();
}

} // namespace

CTcpSock::CTcpSock()
    : m_nConnect(0)
    , m_nMessage(1)
    , m_pSocket(nullptr)
{ }

CTcpSock::~CTcpSock()
{
    delete m_pSocket;
}

BOOL CTcpSock::CreateComm(char const *ip, int port, bool message)
{
    if (!m_pSocket)
        m_pSocket = new QTcpSocket;
    if (CreateComm(m_pSocket, ip, port, message ? 1 : 0))
        return TRUE;
    delete m_pSocket;
    m_pSocket = nullptr;
    return FALSE;
}

BOOL CTcpSock::CreateComm(QTcpSocket *socket, char const *ip, int port, int message)
{
    if (!socket)
        return FALSE;
    const char *address = ip ? ip : "";
    bool ok = false;
    // Only numeric addresses are taken: a name would start a lookup that no bounded wait
    // here could cover.
    const QHostAddress host(QString::fromLatin1(address));
    if (!host.isNull() && port >= 0 && port <= 0xFFFF) {
        socket->connectToHost(host, quint16(port), QIODevice::ReadWrite);
        ok = socket->waitForConnected(3000);
    }
    if (message)
        PrintMessage(ok ? "\r\n[%s] Create client sock succeed(IP = %s, port = %d)\r\n"
                        : "\r\n[%s] Create client sock error(IP = %s, port = %d)\r\n",
                     timeString().GetData(), address, port);
    return ok ? TRUE : FALSE;
}

BOOL CTcpSock::IsConnected()
{
    return m_pSocket && m_pSocket->isValid() &&
            m_pSocket->state() == QAbstractSocket::ConnectedState
        ? TRUE
        : FALSE;
}

int CTcpSock::ReadData(QTcpSocket *socket, char *buffer, int size, int)
{
    if (!IsConnected() || !buffer || size <= 0)
        return 0;
    if (m_ReceiveBuffer.isEmpty()) {
        if (!socket)
            return 0;
        if (socket->bytesAvailable() <= 0 && !socket->waitForReadyRead(1))
            return 0;
        m_ReceiveBuffer.append(socket->readAll());
    }
    const int count = qMin(size, m_ReceiveBuffer.size());
    std::memcpy(buffer, m_ReceiveBuffer.constData(), size_t(count));
    m_ReceiveBuffer.remove(0, count);
    return count;
}

int CTcpSock::ReadData(char *buffer, int size, int timeOut)
{
    return ReadData(m_pSocket, buffer, size, timeOut);
}

int CTcpSock::WriteData(QTcpSocket *socket, char *data, int length)
{
    if (!socket)
        return 0;
    if (data && length > 0 && socket->state() == QAbstractSocket::ConnectedState) {
        socket->write(data, length);
        QElapsedTimer timer;
        timer.start();
        while (socket->bytesToWrite() > 0 && !timer.hasExpired(3000))
            if (!socket->waitForBytesWritten(int(qMax<qint64>(1, 3000 - timer.elapsed()))))
                break;
    }
    return length;
}

int CTcpSock::WriteData(char *data, int length)
{
    return WriteData(m_pSocket, data, length);
}

void CTcpSock::DeleteComm(QTcpSocket *socket, int message)
{
    if (!socket)
        return;
    socket->close();
    delete socket;
    m_nConnect = 0;
    if (message)
        PrintMessage("\r\n[%s] Delete Client Sock\r\n", timeString().GetData());
}

void CTcpSock::DeleteComm()
{
    DeleteComm(m_pSocket, m_nMessage);
    m_pSocket = nullptr;
}

BOOL CTcpSock::CheckIp(char const *ip)
{
    if (!ip || !*ip)
        return FALSE;
    if (!((ip[0] >= '0' && ip[0] <= '9') || ip[0] == '.'))
        return FALSE;
    int points = 0;
    for (const char *p = ip; *p; ++p) {
        if (*p == '.') {
            if (++points > 3)
                return FALSE;
        } else if (*p < '0' || *p > '9') {
            return FALSE;
        }
    }
    return points == 3 ? TRUE : FALSE;
}
