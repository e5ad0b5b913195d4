// SPDX-License-Identifier: MIT
#include "CCommData.h"

#include "CFile.h"

#include <cstring>

CCommData::CCommData()
    : m_nKind(Serial)
    , m_nPort(2001)
    , m_nParam(0)
    , m_nSequence(-1)
    , m_nTime(0)
    , m_nTcpOpened(0)
    , m_nRenewalPeriod(10000)
{
    CSerialInfo::Init(m_CommInfo);
}

CCommData &CCommData::operator=(CCommData &other)
{
    return *this = static_cast<const CCommData &>(other);
}

CCommData &CCommData::operator=(const CCommData &other)
{
    m_nKind = other.m_nKind;
    m_CommInfo = other.m_CommInfo;
    m_strIPAddr = other.m_strIPAddr;
    m_nPort = other.m_nPort;
    return *this;
}

bool CCommData::Write(CFile &file)
{
    unsigned char kind = m_nKind;
    unsigned char reserved = 0;
    unsigned short port = m_nPort;
    bool ok = file.Write(kind) == 1;
    ok = file.Write(reserved) == 1 && ok;
    ok = file.Write(&m_CommInfo, int(sizeof m_CommInfo)) == int(sizeof m_CommInfo) && ok;
    ok = file.Write(m_strIPAddr) == m_strIPAddr.GetLength(true) && ok;
    ok = file.Write(port) == 2 && ok;
    return ok;
}

bool CCommData::Read(CFile &file)
{
    unsigned char kind = 0;
    unsigned char reserved = 0;
    CommInfo info;
    CString address;
    unsigned short port = 0;
    if (file.Read(kind) != 1 || file.Read(reserved) != 1 ||
        file.Read(&info, int(sizeof info)) != int(sizeof info))
        return false;
    // A string count beyond the end leaves nothing for the port, which then fails.
    if (file.Read(address) < 0)
        return false;
    if (file.Read(port) != 2)
        return false;
    m_nKind = kind;
    m_CommInfo = info;
    m_strIPAddr = address;
    m_nPort = port;
    return true;
}

void CCommData::GetCommSetting(CommSetting &setting)
{
    std::memset(&setting, 0, sizeof setting);
    setting.Kind = m_nKind;
    setting.Serial = m_CommInfo;
    const QByteArray address = m_strIPAddr.text.toLatin1();
    std::memcpy(setting.IPAddr, address.constData(),
                size_t(qMin(address.size(), int(sizeof setting.IPAddr) - 1)));
    setting.Port = m_nPort;
}

void CCommData::SetCommSetting(CommSetting const &setting)
{
    m_nKind = std::uint8_t(setting.Kind);
    m_CommInfo = setting.Serial;
    const void *end = std::memchr(setting.IPAddr, 0, sizeof setting.IPAddr);
    const int length =
        end ? int(static_cast<const char *>(end) - setting.IPAddr) : int(sizeof setting.IPAddr);
    m_strIPAddr = CString(QString::fromLatin1(setting.IPAddr, length));
    m_nPort = std::uint16_t(setting.Port);
}
