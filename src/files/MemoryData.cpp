// SPDX-License-Identifier: MIT
#include "MemoryData.h"

#include "Hexa.h"

#include <QtEndian>

#include <algorithm>
#include <climits>
#include <cstring>
#include <new>

namespace {

// The longest string GetStringData takes out of a record.
constexpr int MaxStringBytes = 259;
// ReallocMem's headroom, so that a run of small writes does not reallocate every time.
constexpr int GrowthBytes = 5000;

unsigned char *at(char *buf, int pos)
{
    return reinterpret_cast<unsigned char *>(buf + pos);
}

} // namespace

void MemoryData::MemCopyAndSwap(void *dest, void *src, int size)
{
    if (!dest || !src || size < 1)
        return;
    std::memmove(dest, src, size_t(size));
    if (size % 2 == 0) {
        auto *bytes = static_cast<unsigned char *>(dest);
        std::reverse(bytes, bytes + size);
    }
}

long long MemoryData::GetIntData(char *buf, int size, int &pos)
{
    if (!buf || pos < 0)
        return 0;
    const unsigned char *p = at(buf, pos);
    long long value = 0;
    switch (size) {
    case 1:
        value = static_cast<signed char>(p[0]);
        break;
    case 2:
        value = qFromBigEndian<quint16>(p);
        break;
    case 4:
        value = qFromBigEndian<quint32>(p);
        break;
    case 8:
        value = qFromBigEndian<qint64>(p);
        break;
    default:
        return 0;
    }
    pos += size;
    return value;
}

float MemoryData::GetFloatData(char *buf, int &pos)
{
    if (!buf || pos < 0)
        return 0.0f;
    const quint32 bits = qFromBigEndian<quint32>(at(buf, pos));
    float value;
    std::memcpy(&value, &bits, sizeof value);
    pos += 4;
    return value;
}

CString MemoryData::GetStringData(char *buf, int &pos)
{
    if (!buf || pos < 0)
        return CString();
    const int count = qFromBigEndian<quint16>(at(buf, pos));
    const int taken = qMin(count, MaxStringBytes);
    const char *text = buf + pos + 2;
    const int length = int(std::find(text, text + taken, '\0') - text);
    pos += 2 + taken;
    return CString(QString::fromUtf8(text, length));
}

int MemoryData::ReallocMem(char **buf, int inUse, int add, int &capacity)
{
    if (!buf || inUse < 0 || add < 0)
        return 0;
    const qint64 needed = qint64(inUse) + add;
    if (*buf && needed < capacity)
        return 1;
    const qint64 size = needed + GrowthBytes;
    if (size > INT_MAX)
        return 0;
    char *grown = new (std::nothrow) char[size_t(size)]();
    if (!grown)
        return 0;
    if (*buf) {
        // The caller's capacity is all that is known of the old array's size.
        std::memcpy(grown, *buf, size_t(qBound(0, inUse, capacity)));
        delete[] * buf;
    }
    *buf = grown;
    capacity = int(size);
    return 1;
}

int MemoryData::SetIntData(char **buf, long long value, int size, int &pos, int &capacity)
{
    if (size < 1 || size > 8 || pos < 0 || !ReallocMem(buf, pos, size, capacity))
        return 0;
    unsigned char *p = at(*buf, pos);
    switch (size) {
    case 1:
        p[0] = static_cast<unsigned char>(value);
        break;
    case 2:
        qToBigEndian(quint16(value), p);
        break;
    case 4:
        qToBigEndian(quint32(value), p);
        break;
    default: {
        // The value's memory image on the platforms this format comes from: little-endian.
        unsigned char image[8];
        qToLittleEndian(qint64(value), image);
        MemCopyAndSwap(p, image, size);
        break;
    }
    }
    pos += size;
    return 1;
}

int MemoryData::SetFloatData(char **buf, float value, int &pos, int &capacity)
{
    quint32 bits;
    std::memcpy(&bits, &value, sizeof bits);
    return SetIntData(buf, qint64(bits), 4, pos, capacity);
}

int MemoryData::SetStringData(char **buf, CString str, int &pos, int &capacity)
{
    const QByteArray bytes = str.text.toUtf8();
    const int count = qMin(bytes.size(), 0xFFFF);
    if (pos < 0 || qint64(pos) + 2 + count + GrowthBytes > INT_MAX)
        return 0;
    if (!SetIntData(buf, count, 2, pos, capacity))
        return 0;
    if (!ReallocMem(buf, pos, count, capacity)) {
        pos -= 2; // out of memory: leave no count without its bytes
        return 0;
    }
    std::memcpy(*buf + pos, bytes.constData(), size_t(count));
    pos += count;
    return 1;
}

QByteArray MemoryData::ConvertFromText(CString text)
{
    const QByteArray hex = text.text.toUtf8();
    QByteArray out(hex.size() / 2, Qt::Uninitialized);
    for (int i = 0; i < out.size(); ++i)
        out[i] = char(Hexa::HexaStringToByte(hex.constData() + 2 * i));
    return out;
}

QString MemoryData::ConvertToText(QByteArray data)
{
    return QString::fromLatin1(data.toHex().toUpper());
}
