// SPDX-License-Identifier: MIT
// Conversions, checksums and the encoder: a Modbus frame's CRC, hex text both ways, and a
// scrambled setting.
#include "Demo.h"

#include <Vantor.h>

static int run(DemoContext &)
{
    // "Read holding registers" to slave 1: address 0, count 10. The CRC goes on the wire low
    // byte first, which is the table form's high byte.
    QByteArray frame = MemoryData::ConvertFromText(CString("01030000000A"));
    auto *bytes = reinterpret_cast<unsigned char *>(frame.data());
    const int crc = CCrc::GetCrc16_15_2_1(bytes, frame.size());
    const QByteArray onWire = frame + char(crc >> 8) + char(crc & 0xFF);
    demoSay(QStringLiteral("Modbus frame %1 + CRC -> %2")
                .arg(MemoryData::ConvertToText(frame), MemoryData::ConvertToText(onWire)));
    demoSay(QStringLiteral("bitwise form, the CRC register itself: %1 (low byte sent first)")
                .arg(QString::fromLatin1(
                    Hexa::IntToHexaString(CCrc::GetCrc16_15_13_1(bytes, frame.size()), 2))));

    // Hex text both ways; a non-hex character counts as 0 but still takes its place.
    demoSay(QStringLiteral("\"7E\" -> %1, \"1G\" -> %2, 1000 as 2 bytes -> %3")
                .arg(Hexa::HexaStringToInt("7E", 0))
                .arg(Hexa::HexaStringToInt("1G", 2))
                .arg(QString::fromLatin1(Hexa::IntToHexaString(1000, 2))));

    // A stored credential, scrambled and back.
    const long long key = 0x5EC12E7A11CE0042LL;
    const CString secret("db-password=Tr0ub4dor&3");
    const CString scrambled = CEncoder::Encode(secret, key);
    demoSay(QStringLiteral("scrambled: %1").arg(scrambled.text));
    demoSay(QStringLiteral("unscrambled: %1").arg(CEncoder::Decode(scrambled, key).text));
    demoSay(QStringLiteral("password \"%1\" grade %2 (0 = acceptable)")
                .arg(QStringLiteral("Tr0ub4dor&3"))
                .arg(PasswordChecker::IsValid(CString("Tr0ub4dor&3"))));
    return CEncoder::Decode(scrambled, key) == secret ? 0 : 1;
}

static DemoSection section(60, "Conversions, checksums and the encoder", run);
