// SPDX-License-Identifier: MIT
#pragma once

#include "WinTypes.h"
#include "vantor_export.h"

#include <QByteArray>

class QTcpSocket;

/**
 * One TCP connection driven by polling: a client connection made with a bounded wait, or a
 * connection the application accepted itself and handed in.
 *
 * No event loop is needed and there are no signals towards the user: connecting waits at most
 * 3,000 ms, reading at most 1 ms. Connection events go to the message log with a time stamp.
 * One thread per object.
 */
class VANTOR_EXPORT CTcpSock
{
public:
    /// No socket, empty buffer, message flag 1.
    CTcpSock();
    /// Destroys the socket if any.
    virtual ~CTcpSock();

    CTcpSock(const CTcpSock &) = delete;
    CTcpSock &operator=(const CTcpSock &) = delete;

    /**
     * Makes the owned socket if missing and connects it (the form below). On failure the
     * socket is destroyed and forgotten, so that the next attempt starts fresh.
     */
    BOOL CreateComm(char const *ip, int port, bool message);
    /**
     * Connects `socket` to `ip` (Latin-1) and `port`, waiting at most 3,000 ms. With `message`
     * nonzero logs "\r\n[time] Create client sock succeed(IP = ip, port = n)\r\n" or the same
     * with "error". A null socket gives 0. So do, logged as errors, a port outside 0 to 65535
     * (never narrowed onto another port) and an address that is not numeric IPv4 or IPv6
     * text: host names are not looked up.
     */
    BOOL CreateComm(QTcpSocket *socket, char const *ip, int port, int message);
    /// The owned socket exists, is valid and is connected.
    BOOL IsConnected();
    /**
     * Hands out bytes from the receive buffer. Returns 0 when the owned socket is not
     * connected: the check is made on the owned socket even when another socket is passed.
     * When the buffer is empty, waits at most 1 ms for `socket` to have data and takes all of
     * it; while the buffer holds bytes the socket is not looked at. There is no framing:
     * min(size, buffered) bytes come out. `timeOut` is accepted and ignored.
     */
    int ReadData(QTcpSocket *socket, char *buffer, int size, int timeOut);
    /// ReadData on the owned socket.
    int ReadData(char *buffer, int size, int timeOut);
    /**
     * Writes the bytes to `socket` and returns `length`, whatever the socket accepted: the
     * optimistic result is this library's rule. A null socket gives 0. The bytes are pushed
     * out with a blocking wait of at most 3,000 ms, as no event loop runs.
     */
    int WriteData(QTcpSocket *socket, char *data, int length);
    /// WriteData on the owned socket.
    int WriteData(char *data, int length);
    /**
     * Closes and destroys `socket`, sets the connection mark to 0 and, with `message` nonzero,
     * logs "\r\n[time] Delete Client Sock\r\n". A null socket does nothing. The receive
     * buffer is kept: bytes still in it are handed out first after a new connection.
     */
    void DeleteComm(QTcpSocket *socket, int message);
    /// DeleteComm on the owned socket with the message flag member; forgets the socket.
    void DeleteComm();
    /**
     * Accepts a non-empty text of digits and points with exactly three points, starting with
     * a digit or a point. Octet values are deliberately not range-checked: 999.1.1.1 and "..."
     * pass, 1.2.3 and 1.2.3.4.5 do not.
     */
    static BOOL CheckIp(char const *ip);

    /// Connection mark for the application; 0 at construction and after DeleteComm.
    int m_nConnect;
    /// Whether DeleteComm() logs; 1 at construction.
    int m_nMessage;
    /// Bytes read from the socket and not yet handed out.
    QByteArray m_ReceiveBuffer;
    /// The owned socket, null until created or handed in.
    QTcpSocket *m_pSocket;
};
