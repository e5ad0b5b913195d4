// SPDX-License-Identifier: MIT
#pragma once

#include "CString.h"
#include "vantor_export.h"

#include <cstddef>
#include <cstdint>

/**
 * The serial settings record: 72 bytes, stored byte for byte inside the channel record, in its
 * file form and in the settings dialog's record, so its layout is fixed on every platform.
 *
 * Codes outside the listed ranges are not refused: wherever this library maps a record onto a
 * port or a text it falls back to the default of that field (one stop bit, no parity, no flow
 * control, 8 data bits).
 */
struct CommInfo
{
    /// Device name as 8-bit text, NUL-terminated when shorter than 64 bytes ("/dev/ttyUSB0",
    /// a socat link, or COM3 on Windows). A name that fills all 64 bytes is read to its end.
    char PortName[64];
    /// Bits per second for both directions; default 9600.
    std::int32_t BaudRate;
    /// 5 to 8; default 8.
    std::uint8_t DataBits;
    /// 1 = one, 2 = one and a half, 3 = two; 0 is read as 1 and rewritten as 1 in the record.
    std::uint8_t StopBits;
    /// 0 none, 1 odd, 2 even, 3 mark, 4 space.
    std::uint8_t Parity;
    /// 0 none, 1 hardware (RTS/CTS), 2 software (XON/XOFF).
    std::uint8_t FlowControl;
};

static_assert(sizeof(CommInfo) == 72, "CommInfo keeps its 72-byte layout");
static_assert(offsetof(CommInfo, BaudRate) == 64 && offsetof(CommInfo, DataBits) == 68 &&
                  offsetof(CommInfo, StopBits) == 69 && offsetof(CommInfo, Parity) == 70 &&
                  offsetof(CommInfo, FlowControl) == 71,
              "CommInfo keeps its field offsets");

/// Defaults and the one-line text form of a CommInfo record. No state of its own.
class VANTOR_EXPORT CSerialInfo
{
public:
    /// Zeroes all 72 bytes, then sets 9600 baud, 8 data bits and stop code 1.
    static void Init(CommInfo &info);
    /**
     * "port, baud, data bits, stop bits, parity", e.g. "COM3, 9600, 8, 1, NONE"; stop bits are
     * named "1", "1.5", "2", parity "NONE", "ODD", "EVEN", "MARK", "SPACE". A stop code 0 is
     * first rewritten as 1 in the caller's record.
     */
    static CString GetString(CommInfo &info);

    /// The port name of the record as text: at most 64 bytes, read as Latin-1.
    static QString PortName(const CommInfo &info);
};
