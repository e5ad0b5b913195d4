// SPDX-License-Identifier: MIT
#include "CSerialInfo.h"

#include <cstring>

void CSerialInfo::Init(CommInfo &info)
{
    std::memset(&info, 0, sizeof info);
    info.BaudRate = 9600;
    info.DataBits = 8;
    info.StopBits = 1;
}

QString CSerialInfo::PortName(const CommInfo &info)
{
    const void *end = std::memchr(info.PortName, 0, sizeof info.PortName);
    const int length =
        end ? int(static_cast<const char *>(end) - info.PortName) : int(sizeof info.PortName);
    return QString::fromLatin1(info.PortName, length);
}

CString CSerialInfo::GetString(CommInfo &info)
{
    if (info.StopBits == 0)
        info.StopBits = 1;
    static const char *const stopNames[] = {"1", "1", "1.5", "2"};
    static const char *const parityNames[] = {"NONE", "ODD", "EVEN", "MARK", "SPACE"};
    const char *stop = info.StopBits <= 3 ? stopNames[info.StopBits] : stopNames[1];
    const char *parity = info.Parity <= 4 ? parityNames[info.Parity] : parityNames[0];
    CString text;
    text.Format("%s, %d, %d, %s, %s", PortName(info).toUtf8().constData(), int(info.BaudRate),
                int(info.DataBits), stop, parity);
    return text;
}
