// SPDX-License-Identifier: MIT
#include "CCrc.h"

#include "Hexa.h"

#include <QtGlobal>

namespace {

template<int N>
struct Table
{
    quint16 v[N];
};

// Entry i is the reflected CRC register after shifting the value i through `bits` steps with
// polynomial `poly` from a zero register: the classic table of a right-shifting CRC.
template<int N>
constexpr Table<N> reflectedTable(quint16 poly, int bits)
{
    Table<N> table {};
    for (int i = 0; i < N; ++i) {
        quint16 crc = quint16(i);
        for (int b = 0; b < bits; ++b)
            crc = (crc & 1) ? quint16((crc >> 1) ^ poly) : quint16(crc >> 1);
        table.v[i] = crc;
    }
    return table;
}

struct ByteTable
{
    quint8 v[256];
};

// The MODBUS protocol document's auchCRCHi and auchCRCLo tables are the low and high bytes of the
// reflected 0xA001 table: its "high" register byte is the low byte of the CRC register.
constexpr ByteTable modbusByteTable(bool upper)
{
    constexpr Table<256> crc = reflectedTable<256>(0xA001, 8);
    ByteTable table {};
    for (int i = 0; i < 256; ++i)
        table.v[i] = quint8(upper ? crc.v[i] >> 8 : crc.v[i] & 0xFF);
    return table;
}

constexpr ByteTable ModbusHigh = modbusByteTable(false);
constexpr ByteTable ModbusLow = modbusByteTable(true);
// CRC-16/ARC four bytes at a time: Arc[k][i] is the register after byte i followed by k zero
// bytes, so four table lookups replace four byte steps (the same sums as one byte at a time).
struct SliceTables
{
    Table<256> t[4];
};
constexpr SliceTables arcSlices()
{
    SliceTables s {};
    s.t[0] = reflectedTable<256>(0xA001, 8);
    for (int k = 1; k < 4; ++k)
        for (int i = 0; i < 256; ++i) {
            const quint16 prev = s.t[k - 1].v[i];
            s.t[k].v[i] = quint16((prev >> 8) ^ s.t[0].v[prev & 0xFF]);
        }
    return s;
}
constexpr SliceTables Arc = arcSlices();
constexpr Table<256> Dnp = reflectedTable<256>(0xA6BC, 8); // 0x3D65 reflected

static_assert(ModbusHigh.v[1] == 0xC1 && ModbusHigh.v[3] == 0x40, "MODBUS high table");
static_assert(ModbusLow.v[1] == 0xC0 && ModbusLow.v[3] == 0x01, "MODBUS low table");
static_assert(Arc.t[0].v[1] == 0xC0C1 && Arc.t[0].v[255] == 0x4040, "ARC byte table");
static_assert(Dnp.v[1] == 0x365E && Dnp.v[3] == 0x5AE2, "DNP table");

bool empty(const unsigned char *buf, int len)
{
    return !buf || len < 1;
}

template<typename Op>
int lowByteSum(const unsigned char *buf, int len, int init, Op op)
{
    if (empty(buf, len))
        return init;
    quint8 low = quint8(init);
    for (int i = 0; i < len; ++i)
        low = quint8(op(low, buf[i]));
    return int((quint32(init) & ~0xFFu) | low);
}

} // namespace

int CCrc::GetCrcSum16(unsigned char *buf, int len, int init)
{
    if (empty(buf, len))
        return init;
    quint32 sum = quint32(init);
    for (int i = 0; i < len; ++i)
        sum += buf[i];
    return int(sum);
}

int CCrc::GetCrcSub16(unsigned char *buf, int len, int init)
{
    if (empty(buf, len))
        return init;
    quint32 sum = quint32(init);
    for (int i = 0; i < len; ++i)
        sum -= buf[i];
    return int(sum);
}

int CCrc::GetCrcXor16(unsigned char *buf, int len, int init)
{
    if (empty(buf, len))
        return init;
    for (int i = 0; i < len; ++i)
        init ^= buf[i];
    return init;
}

int CCrc::GetCrcSum8(unsigned char *buf, int len, int init)
{
    return lowByteSum(buf, len, init, [](quint8 a, quint8 b) { return a + b; });
}

int CCrc::GetCrcSub8(unsigned char *buf, int len, int init)
{
    return lowByteSum(buf, len, init, [](quint8 a, quint8 b) { return a - b; });
}

int CCrc::GetCrcXor8(unsigned char *buf, int len, int init)
{
    return lowByteSum(buf, len, init, [](quint8 a, quint8 b) { return a ^ b; });
}

int CCrc::Get2ByteHexSum8(unsigned char *buf, int len, int init)
{
    if (empty(buf, len))
        return init;
    QByteArray bytes(len / 2, Qt::Uninitialized);
    for (int i = 0; i < bytes.size(); ++i)
        bytes[i] = char(Hexa::HexaStringToByte(reinterpret_cast<const char *>(buf) + 2 * i));
    return GetCrcSum8(reinterpret_cast<unsigned char *>(bytes.data()), bytes.size(), init);
}

int CCrc::GetCrcXorAdd(unsigned char *buf, int len)
{
    if (empty(buf, len))
        return 0;
    quint8 x = 0;
    quint8 sum = 0;
    for (int i = 0; i < len; ++i) {
        x ^= buf[i];
        sum += buf[i];
    }
    return x * 256 + sum;
}

int CCrc::GetCrc16_15_13_1(unsigned char *buf, int len)
{
    if (empty(buf, len))
        return -1;
    quint16 reg = 0xFFFF;
    for (int i = 0; i < len; ++i) {
        for (int bit = 0; bit < 8; ++bit) {
            const bool feedback = ((buf[i] >> bit) ^ reg) & 1;
            reg >>= 1;
            if (feedback)
                reg ^= 0xA001;
        }
    }
    return reg;
}

int CCrc::GetCrc16_15_2_1(unsigned char *buf, int len)
{
    if (empty(buf, len))
        return -1;
    quint8 high = 0xFF;
    quint8 low = 0xFF;
    for (int i = 0; i < len; ++i) {
        const quint8 index = high ^ buf[i];
        high = ModbusHigh.v[index] ^ low;
        low = ModbusLow.v[index];
    }
    return high * 256 + low;
}

int CCrc::GetCrc16_5_2_1(unsigned char *buf, int len)
{
    if (empty(buf, len))
        return 0;
    quint16 reg = 0;
    int i = 0;
    for (; i + 4 <= len; i += 4) {
        const quint16 x = quint16(reg ^ (buf[i] | (buf[i + 1] << 8)));
        reg = quint16(Arc.t[3].v[x & 0xFF] ^ Arc.t[2].v[x >> 8] ^ Arc.t[1].v[buf[i + 2]] ^
                      Arc.t[0].v[buf[i + 3]]);
    }
    for (; i < len; ++i)
        reg = quint16((reg >> 8) ^ Arc.t[0].v[(reg ^ buf[i]) & 0xFF]);
    return reg;
}

int CCrc::GetCrcDNP(unsigned char *buf, int len)
{
    if (empty(buf, len))
        return -1;
    quint32 reg = 0;
    for (int i = 0; i < len; ++i)
        reg = (reg >> 8) ^ Dnp.v[(reg ^ buf[i]) & 0xFF];
    return int(~reg);
}
