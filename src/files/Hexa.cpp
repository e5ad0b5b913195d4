// SPDX-License-Identifier: MIT
#include "Hexa.h"

#include <cstdint>
#include <cstring>

namespace {

int hexDigit(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return 0;
}

} // namespace

int Hexa::HexaStringToInt(char const *str, int count)
{
    if (!str)
        return 0;
    if (count == 0)
        count = int(qMin<size_t>(std::strlen(str), INT32_MAX));
    if (count < 1)
        return 0;
    quint32 value = 0;
    bool ended = false;
    for (int i = 0; i < count; ++i) {
        ended = ended || str[i] == '\0';
        value = value * 16 + quint32(ended ? 0 : hexDigit(str[i]));
    }
    return int(value);
}

BYTE Hexa::HexaStringToByte(char const *str)
{
    return BYTE(HexaStringToInt(str, 2));
}

WORD Hexa::HexaStringToWord(char const *str)
{
    return WORD(HexaStringToInt(str, 4));
}

DWORD Hexa::HexaStringToDword(char const *str)
{
    return DWORD(HexaStringToInt(str, 8));
}

int Hexa::HexaStringToInt(QString str)
{
    bool ok = false;
    const qlonglong value = str.toLongLong(&ok, 16);
    if (ok && value >= INT32_MIN && value <= INT32_MAX)
        return int(value);
    if (str.size() > 2) {
        const QByteArray firstTwo = str.left(2).toLatin1();
        return HexaStringToInt(firstTwo.constData(), 2);
    }
    return 0;
}

QString Hexa::HexaStringToIntString(QString str)
{
    return QString::number(HexaStringToInt(str));
}

QByteArray Hexa::IntToHexaString(int value, int bytes)
{
    if (bytes < 1 || bytes > 1024)
        return QByteArray();
    static const char digits[] = "0123456789ABCDEF";
    const quint32 bits = quint32(value);
    const int width = 2 * bytes;
    QByteArray out(width, '0');
    for (int k = 0; k < qMin(width, 8); ++k)
        out[width - 1 - k] = digits[(bits >> (4 * k)) & 0xF];
    return out;
}
