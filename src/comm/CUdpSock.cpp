// SPDX-License-Identifier: MIT
#include "CUdpSock.h"

#include <QNetworkInterface>
#include <QUdpSocket>

#include <cstring>

CUdpSock::CUdpSock()
    : m_pSocket(nullptr)
    , m_nMessageBoxFlag(0)
    , m_nPort(0)
    , m_nWaitTime(10)
{ }

CUdpSock::~CUdpSock()
{
    DeleteComm();
}

BOOL CUdpSock::CreateComm(int port, int, int)
{
    DeleteComm();
    m_nPort = port;
    if (port < 0 || port > 0xFFFF)
        return FALSE;
    m_pSocket = new QUdpSocket;
    if (!m_pSocket->bind(QHostAddress::AnyIPv4, quint16(port),
                         QAbstractSocket::ShareAddress | QAbstractSocket::ReuseAddressHint)) {
        delete m_pSocket;
        m_pSocket = nullptr;
        return FALSE;
    }
    m_nPort = m_pSocket->localPort();
    return TRUE;
}

int CUdpSock::ReadData(char *buffer, int size, int)
{
    if (!m_pSocket || !m_pSocket->hasPendingDatagrams())
        return 0;
    const qint64 pending = m_pSocket->pendingDatagramSize();
    QByteArray datagram(int(qMax<qint64>(0, pending)), Qt::Uninitialized);
    QHostAddress sender;
    const qint64 got = m_pSocket->readDatagram(datagram.data(), datagram.size(), &sender);
    if (got < 0)
        return 0;
    const quint32 ip = sender.toIPv4Address();
    m_strIPAddr.Format("%d.%d.%d.%d", int(ip >> 24), int((ip >> 16) & 0xFF), int((ip >> 8) & 0xFF),
                       int(ip & 0xFF));
    const int count = buffer && size > 0 ? int(qMin<qint64>(size, got)) : 0;
    if (count > 0)
        std::memcpy(buffer, datagram.constData(), size_t(count));
    return count;
}

int CUdpSock::WriteData(char const *address, char const *data, int length, int port)
{
    if (!m_pSocket || !data || length < 0)
        return 0;
    if (port == 0)
        port = m_nPort;
    const quint16 destinationPort = quint16(port);
    if (!address) {
        bool sent = false;
        const auto interfaces = QNetworkInterface::allInterfaces();
        for (const QNetworkInterface &interface : interfaces)
            for (const QNetworkAddressEntry &entry : interface.addressEntries())
                if (entry.broadcast().protocol() == QAbstractSocket::IPv4Protocol)
                    sent |= m_pSocket->writeDatagram(data, length, entry.broadcast(),
                                                     destinationPort) >= 0;
        return sent ? length : 0;
    }
    const QHostAddress destination = *address ? QHostAddress(QString::fromLatin1(address))
                                              : QHostAddress(QHostAddress::LocalHost);
    if (destination.isNull())
        return 0;
    return int(m_pSocket->writeDatagram(data, length, destination, destinationPort));
}

void CUdpSock::DeleteComm()
{
    if (!m_pSocket)
        return;
    // Datagrams still waiting are read and dropped; a sender that never stops cannot hold
    // the close up for longer than a bounded number of reads.
    char discard[100];
    for (int i = 0; i < 100000 && ReadData(discard, sizeof discard, 0) > 0; ++i) { }
    delete m_pSocket;
    m_pSocket = nullptr;
}

CString CUdpSock::GetIPAddr()
{
    return m_strIPAddr;
}

void CUdpSock::SetMessageBoxFlag(int flag)
{
    m_nMessageBoxFlag = flag;
}

int CUdpSock::Select(int, int)
{
    return 0;
}

void CUdpSock::ClearComm() { }
