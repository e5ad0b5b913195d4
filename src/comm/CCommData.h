// SPDX-License-Identifier: MIT
#pragma once

#include "CSerialInfo.h"
#include "CString.h"
#include "vantor_export.h"

#include <cstddef>
#include <cstdint>

class CFile;

/**
 * The flat record a communication settings dialog exchanges with CCommData (176 bytes).
 * The leading 32 bytes are zeroed and otherwise ignored.
 */
struct CommSetting
{
    /// Zeroed by GetCommSetting, ignored by SetCommSetting.
    char Reserved[32];
    /// 0 serial, 1 UDP, 2 TCP client, 3 TCP server side.
    std::int32_t Kind;
    /// Serial settings, used by the serial kind.
    CommInfo Serial;
    /// NUL-terminated 8-bit text.
    char IPAddr[64];
    /// TCP or UDP port, 0 to 65535 (narrowed to 16 bits on the way in).
    std::int32_t Port;
};

static_assert(sizeof(CommSetting) == 176 && offsetof(CommSetting, Kind) == 32 &&
                  offsetof(CommSetting, Serial) == 36 && offsetof(CommSetting, IPAddr) == 108 &&
                  offsetof(CommSetting, Port) == 172,
              "CommSetting keeps its layout");

/**
 * The settings and state of one communication channel (see CCommunication): the link kind,
 * the serial settings, the address and port, and the time of the last creation that drives
 * the periodic renewal.
 */
class VANTOR_EXPORT CCommData
{
public:
    /// Link kinds (m_nKind).
    enum Kind : std::uint8_t {
        Serial = 0,    ///< Serial port with the settings in m_CommInfo.
        Udp = 1,       ///< UDP socket bound to the local port m_nPort.
        TcpClient = 2, ///< TCP connection to m_strIPAddr and m_nPort.
        /// TCP, server side: the application hands in the sockets it accepts
        /// (CCommunication::SetSocket); CreateComm still connects to m_strIPAddr and m_nPort.
        TcpServer = 3
    };

    /// Serial kind, port 2001, default serial settings, empty address, renewal 10,000 ms.
    CCommData();

    /**
     * Copies kind, serial settings, IP address and port only. The two carried ints, the time
     * stamp, the TCP-opened flag and the renewal period of this record are kept, so that a
     * channel's own state survives a change of settings.
     */
    ///@{
    CCommData &operator=(CCommData &other);
    CCommData &operator=(const CCommData &other);
    ///@}
    /// Unlike assignment, copy construction copies every field, the channel state included.
    CCommData(const CCommData &other) = default;

    /**
     * The file form: kind (1 byte), a reserved 0 byte, the 72-byte serial settings, the
     * address as CFile writes a CString, the port (2 bytes). Returns true when every item was
     * written in full.
     */
    bool Write(CFile &file);
    /**
     * Reads the file form. A file cut short, or a string count that does not fit in it, makes
     * Read return false and leaves the record unchanged.
     */
    bool Read(CFile &file);

    /// Zeroes `setting` and fills kind, serial settings, address (cut to 63 bytes) and port.
    void GetCommSetting(CommSetting &setting);
    /// Takes kind (narrowed to 8 bits), serial settings, address (at most 64 bytes) and port
    /// (narrowed to 16 bits) from `setting`.
    void SetCommSetting(CommSetting const &setting);

    /// Link kind, 0 to 3 (see Kind).
    std::uint8_t m_nKind;
    /// Port: the peer's for the TCP kinds, the local one UDP binds to. 2001 by default.
    std::uint16_t m_nPort;
    /// Serial settings, used by the serial kind.
    CommInfo m_CommInfo;
    /// Peer address for the TCP kinds, numeric IPv4 or IPv6 text (host names are not looked up).
    CString m_strIPAddr;
    /// Carried for the application; default 0.
    std::int32_t m_nParam;
    /// Carried for the application; default -1, set to -1 again by CCommunication::DeleteComm.
    std::int32_t m_nSequence;
    /// Milliseconds since 1970 of the last successful creation or the last deletion; 0 at first.
    std::int64_t m_nTime;
    /// Set to 1 by every TCP creation attempt, never cleared; TCP links are deleted only then.
    std::int32_t m_nTcpOpened;
    /// A link older than this many milliseconds is closed and opened anew by CreateComm.
    std::int32_t m_nRenewalPeriod;
};
