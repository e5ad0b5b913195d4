// SPDX-License-Identifier: MIT
#pragma once

#include "CString.h"
#include "WinTypes.h"
#include "vantor_export.h"

class QUdpSocket;

/**
 * One UDP endpoint bound to a local port, read by polling one datagram at a time.
 *
 * Reading never waits. Writing goes to a given IPv4 address, to 127.0.0.1 (empty address) or,
 * with a null address, as a broadcast on every interface that has an IPv4 broadcast address.
 * The sender of the last datagram read is kept so that the application can answer it.
 */
class VANTOR_EXPORT CUdpSock
{
public:
    /// Empty sender address, no socket, port 0.
    CUdpSock();
    /// DeleteComm().
    virtual ~CUdpSock();

    CUdpSock(const CUdpSock &) = delete;
    CUdpSock &operator=(const CUdpSock &) = delete;

    /**
     * DeleteComm(), stores `port` and binds a new socket to it on every local IPv4 address,
     * with address sharing (other sockets may bind the same port). Port 0 binds a free port,
     * which is then stored. The two ints are accepted and ignored. Returns 1, or 0 (no socket
     * kept) when the bind fails or the port lies outside 0 to 65535.
     */
    BOOL CreateComm(int port, int reserved1, int reserved2);
    /**
     * Takes one pending datagram: copies min(datagram size, size) bytes and returns that
     * count; the rest of a longer datagram is dropped, so each call consumes one datagram.
     * Sets the sender address. Returns 0 at once when nothing is pending. The third argument
     * is ignored.
     */
    int ReadData(char *buffer, int size, int reserved);
    /**
     * Sends `length` bytes as one datagram to `address` (dotted text, Latin-1) and `port`;
     * port 0 means the bound port. An empty address sends to 127.0.0.1; a null address sends
     * one datagram to the broadcast address of every IPv4 entry of every interface and returns
     * `length` when at least one went out. Otherwise returns what the socket reports for the
     * datagram (-1 on a refused send); 0 without a socket or for an address that does not
     * parse.
     */
    int WriteData(char const *address, char const *data, int length, int port);
    /// Drains pending datagrams 100 bytes at a time, then destroys the socket.
    void DeleteComm();
    /// The sender of the last datagram read, "%d.%d.%d.%d".
    CString GetIPAddr();
    /// Stores the flag; no operation reads it.
    void SetMessageBoxFlag(int flag);
    /// Always 0.
    int Select(int reserved1, int reserved2);
    /// Does nothing.
    void ClearComm();

    /// The dotted IPv4 text of the last datagram's sender.
    CString m_strIPAddr;
    /// The owned socket, null until CreateComm succeeds.
    QUdpSocket *m_pSocket;
    /// The value given to SetMessageBoxFlag, 0 at first; kept for callers that read it back.
    int m_nMessageBoxFlag;
    /// The bound port: WriteData's destination for port 0.
    int m_nPort;
    /// 10 at construction; not read by this class.
    int m_nWaitTime;
};
