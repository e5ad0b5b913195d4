// SPDX-License-Identifier: MIT
#include "CCommunication.h"

#include "MutexLocker_p.h"
#include "VantorStrings.h"

#include <QDateTime>
#include <QMutex>

#include <algorithm>

namespace {

/// The process-wide tables. Only the port table is read; both are reset by every channel.
int s_LanPortTable[256];
int s_SpareTable[256];

QMutex &lanPortMutex()
{
    static QMutex mutex;
    return mutex;
}

void resetTables()
{
    std::fill(std::begin(s_LanPortTable), std::end(s_LanPortTable), -1);
    std::fill(std::begin(s_SpareTable), std::end(s_SpareTable), -1);
}

/// All -1 from the start, before any channel exists.
const bool s_TablesReady = (resetTables(), true);

qint64 now()
{
    return QDateTime::currentMSecsSinceEpoch();
}

} // namespace

CCommunication::CCommunication()
{
    Init();
}

CCommunication::~CCommunication()
{
    delete m_pSerialComm;
    delete m_pTcpSock;
    delete m_pUdpSock;
}

void CCommunication::Init()
{
    m_pSerialComm = nullptr;
    m_pTcpSock = nullptr;
    m_pUdpSock = nullptr;
    VantorPrivate::MutexLocker<> locker(&lanPortMutex());
    resetTables();
}

BOOL CCommunication::CreateComm(CCommData &data, int, int port, int message)
{
    CheckAndDelete(data, message);
    if (IsConnected(data))
        return TRUE;
    if (port < 0)
        port = data.m_nPort;
    BOOL result = FALSE;
    switch (data.m_nKind) {
    case CCommData::Serial:
        if (!m_pSerialComm)
            m_pSerialComm = new CSerialComm;
        result = m_pSerialComm->CreateComm(data.m_CommInfo, message != 0);
        break;
    case CCommData::Udp:
        if (!m_pUdpSock)
            m_pUdpSock = new CUdpSock;
        result = m_pUdpSock->CreateComm(port, 0, 1);
        break;
    case CCommData::TcpClient:
    case CCommData::TcpServer:
        if (!m_pTcpSock)
            m_pTcpSock = new CTcpSock;
        result = m_pTcpSock->CreateComm(data.m_strIPAddr.GetData(), port, message != 0);
        data.m_nTcpOpened = 1;
        break;
    default:
        return FALSE;
    }
    if (result)
        data.m_nTime = now();
    return result;
}

BOOL CCommunication::IsConnected(CCommData &data)
{
    switch (data.m_nKind) {
    case CCommData::Serial:
        return m_pSerialComm && m_pSerialComm->IsConnected() ? TRUE : FALSE;
    case CCommData::Udp:
        return m_pUdpSock && m_pUdpSock->m_pSocket ? TRUE : FALSE;
    case CCommData::TcpClient:
    case CCommData::TcpServer:
        return m_pTcpSock && m_pTcpSock->IsConnected() ? TRUE : FALSE;
    default:
        return FALSE;
    }
}

int CCommunication::ReadData(CCommData &data, char *buffer, int size, int timeOut)
{
    switch (data.m_nKind) {
    case CCommData::Serial:
        return m_pSerialComm ? m_pSerialComm->ReadData(buffer, size, timeOut) : 0;
    case CCommData::Udp:
        return m_pUdpSock ? m_pUdpSock->ReadData(buffer, size, 1) : 0;
    case CCommData::TcpClient:
    case CCommData::TcpServer:
        return m_pTcpSock ? m_pTcpSock->ReadData(buffer, size, timeOut) : 0;
    default:
        return 0;
    }
}

int CCommunication::WriteData(CCommData &data, char *buffer, int length)
{
    switch (data.m_nKind) {
    case CCommData::Serial:
        return m_pSerialComm ? m_pSerialComm->WriteData(buffer, length) : 0;
    case CCommData::Udp:
        return m_pUdpSock ? m_pUdpSock->WriteData(data.m_strIPAddr.GetData(), buffer, length, 0)
                          : 0;
    case CCommData::TcpClient:
    case CCommData::TcpServer:
        return m_pTcpSock ? m_pTcpSock->WriteData(buffer, length) : 0;
    default:
        return 0;
    }
}

void CCommunication::DeleteComm(CCommData &data, int message)
{
    bool destroyed = false;
    switch (data.m_nKind) {
    case CCommData::Serial:
        if (m_pSerialComm) {
            delete m_pSerialComm;
            m_pSerialComm = nullptr;
            destroyed = true;
        }
        break;
    case CCommData::Udp:
        if (m_pUdpSock) {
            delete m_pUdpSock;
            m_pUdpSock = nullptr;
            destroyed = true;
        }
        break;
    case CCommData::TcpClient:
    case CCommData::TcpServer:
        if (data.m_nTcpOpened && m_pTcpSock) {
            m_pTcpSock->m_nMessage = message;
            m_pTcpSock->DeleteComm();
            delete m_pTcpSock;
            m_pTcpSock = nullptr;
            destroyed = true;
        }
        break;
    default:
        break;
    }
    if (destroyed || !data.m_nTcpOpened) {
        data.m_nSequence = -1;
        data.m_nTime = now();
    }
}

int CCommunication::CheckAndDelete(CCommData &data, int message)
{
    const qint64 current = now();
    if (data.m_nTime > current)
        data.m_nTime = current;
    if (current - data.m_nTime < data.m_nRenewalPeriod)
        return 0;
    DeleteComm(data, message);
    return 1;
}

void CCommunication::SetSocket(QTcpSocket *socket)
{
    if (!m_pTcpSock)
        m_pTcpSock = new CTcpSock;
    m_pTcpSock->m_pSocket = socket;
}

CString CCommunication::GetIPAddr(CCommData &data)
{
    if (data.m_nKind == CCommData::Udp && m_pUdpSock)
        return m_pUdpSock->GetIPAddr();
    return CString();
}

CString CCommunication::GetCommInfo(CCommData *data)
{
    if (!data)
        return CString();
    if (data->m_nKind == CCommData::Serial)
        return CSerialInfo::GetString(data->m_CommInfo);
    CString text;
    text.Format("%s:%d", data->m_strIPAddr.GetData(), int(data->m_nPort));
    return text;
}

CString CCommunication::GetCommInfoString(CCommData &data)
{
    CString text;
    switch (data.m_nKind) {
    case CCommData::Serial:
        return CSerialInfo::GetString(data.m_CommInfo);
    case CCommData::TcpServer:
        text.Format("%d", int(data.m_nPort));
        return CString("TCP Server :") + text;
    case CCommData::TcpClient:
        return CString("TCP:") + GetCommInfo(&data);
    case CCommData::Udp:
        return CString("UDP:") + GetCommInfo(&data);
    default:
        return GetCommInfo(&data);
    }
}

int CCommunication::GetLanPortSequence(int port, int reuse)
{
    VantorPrivate::MutexLocker<> locker(&lanPortMutex());
    Sleep(10);
    for (int i = 0; i < 256; ++i) {
        if (s_LanPortTable[i] < 0) {
            s_LanPortTable[i] = port;
            return i;
        }
        if (reuse == 0 && s_LanPortTable[i] == port)
            return i;
    }
    return 0;
}
