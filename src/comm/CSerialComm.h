// SPDX-License-Identifier: MIT
#pragma once

#include "CSerialInfo.h"
#include "vantor_export.h"

#include <QByteArray>

class QSerialPort;

/**
 * A serial port opened with the settings of a CommInfo record and read by polling.
 *
 * No event loop is needed: every wait is a blocking wait of at most 1 ms on the port, and the
 * timed read counts whole seconds. One thread per object.
 */
class VANTOR_EXPORT CSerialComm
{
public:
    /// No port, empty buffer.
    CSerialComm();
    /// DeleteComm(1).
    virtual ~CSerialComm();

    CSerialComm(const CSerialComm &) = delete;
    CSerialComm &operator=(const CSerialComm &) = delete;

    /**
     * Makes the port object if missing, applies the record (port name as Latin-1, baud rate
     * for both directions, data bits, parity, stop bits, flow control) and opens the port for
     * reading and writing. A stop code 0 is rewritten as 1 in the record; codes out of range
     * are applied as the defaults. With `message` true logs "Serial port open OK : %s\r\n" or
     * "Serial port open error : %s\r\n" with the port name. Returns 1 or 0; after a failure
     * the port object is kept for the next attempt.
     */
    int CreateComm(CommInfo &info, bool message);
    /// The port exists and is open.
    bool IsConnected();
    /**
     * When the receive buffer is empty, waits at most 1 ms for data and takes everything the
     * port has; then hands out min(size, buffered) bytes from the buffer and returns the count.
     */
    int ReadData(char *buffer, int size);
    /**
     * The timed read: collects bytes one at a time with ReadByte until `size` bytes are in or
     * `timeOut` whole seconds have passed on the seconds clock, sleeping 1 ms after each empty
     * try. The coarse timing is this library's rule: a time-out of 0 returns 0 at once, and 1
     * waits anywhere between 0 and 1 s depending on where in the current second the call
     * began. A clock set back restarts the wait. Bytes already in the receive buffer of
     * ReadData(char*, int) are not seen.
     */
    int ReadData(char *buffer, int size, int timeOut);
    /// Waits at most 1 ms and reads one byte straight from the port. Returns 1 or 0.
    int ReadByte(unsigned char &byte);
    /// Writes the bytes; returns what the port accepted, or -1 (also without an open port).
    int WriteData(char const *data, int length);
    /// Writes one byte; returns 1, or -1.
    int WriteByte(unsigned char byte);
    /// Closes and destroys the port object. The argument is ignored; nothing is logged.
    void DeleteComm(int message);
    /// Does nothing.
    void ClearComm();
    /// Stores the flag; no serial operation reads it.
    void SetMessageBoxFlag(int flag);

    /// Index of `baudRate` in 110, 300, 1200, 2400, 4800, 9600, 19200, 38400, 57600, 115200,
    /// 230400, 460800, 921600; a rate not listed gives 5, the index of 9600.
    static int GetBaudRatePos(int baudRate);
    /// 1 for 7 data bits, else 0 (a settings list shows 8 then 7).
    static int GetDataBitPos(int dataBits);
    /// 1 for the value 2, else 0.
    static int GetStopBitPos(int stopBits);

    /// The owned port, null until the first CreateComm.
    QSerialPort *m_pPort;
    /// The value given to SetMessageBoxFlag, 0 at first; kept for callers that read it back.
    int m_nMessageBoxFlag;
    /// Bytes taken from the port by ReadData(char*, int) and not yet handed out.
    QByteArray m_ReceiveBuffer;

private:
    bool waitForData();
};
