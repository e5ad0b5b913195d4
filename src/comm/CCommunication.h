// SPDX-License-Identifier: MIT
#pragma once

#include "CCommData.h"
#include "CSerialComm.h"
#include "CTcpSock.h"
#include "CUdpSock.h"
#include "WinTypes.h"
#include "vantor_export.h"

class QTcpSocket;

/**
 * One polled link whose kind is chosen at run time by a CCommData record: serial port, UDP,
 * TCP client, or a TCP connection accepted by the application (SetSocket).
 *
 * The application calls CreateComm to open or keep the link, ReadData to take what has
 * arrived and WriteData to send. No callbacks, signals, threads or event loop are involved.
 * A channel and its record are used from one thread.
 */
class VANTOR_EXPORT CCommunication
{
public:
    /// All links null; resets the process-wide port-sequence table (see GetLanPortSequence).
    CCommunication();
    /// Destroys whichever links exist.
    virtual ~CCommunication();

    CCommunication(const CCommunication &) = delete;
    CCommunication &operator=(const CCommunication &) = delete;

    /**
     * What the constructor does, on a live object: the links are forgotten without being
     * closed or destroyed, and the process-wide tables are reset. Call it only on a channel
     * whose links are already deleted.
     */
    void Init();

    /**
     * Opens the link of `data`'s kind, or keeps it. First CheckAndDelete: a link older than
     * the record's renewal period is closed, so that a polling caller re-opens it
     * periodically (this renewal is intended). A connected link then gives 1 at once.
     * A negative `port` takes the record's port. Serial opens with the record's settings,
     * UDP binds the port, TCP (kinds 2 and 3) connects to the record's address and sets the
     * record's TCP-opened flag whatever the outcome. On success the record's time stamp is
     * set to now. `message` nonzero logs the serial and TCP events. `reserved` is ignored.
     * Returns 1 when the link is open, 0 otherwise (also for an unknown kind).
     */
    BOOL CreateComm(CCommData &data, int reserved, int port, int message);
    /// Serial: port open; UDP: a bound socket exists; TCP: socket valid and connected.
    BOOL IsConnected(CCommData &data);
    /**
     * Takes received bytes: serial through the timed read (`timeOut` in whole seconds), UDP
     * one datagram (the time-out is not passed on), TCP what has arrived (the time-out is
     * ignored there). Returns the byte count, 0 when the link is missing.
     */
    int ReadData(CCommData &data, char *buffer, int size, int timeOut);
    /**
     * Sends: serial and TCP write the bytes, UDP sends one datagram to the record's address
     * and port. Returns the byte count, 0 when the link is missing.
     */
    int WriteData(CCommData &data, char *buffer, int length);
    /**
     * Closes and destroys the link of the record's kind; a TCP link only once the record's
     * TCP-opened flag is set. Then, when a link was destroyed or the TCP flag is clear, sets
     * the record's sequence field to -1 and its time stamp to now.
     */
    void DeleteComm(CCommData &data, int message);
    /**
     * DeleteComm when the record's time stamp is at least the renewal period old; returns 1
     * then, else 0. A time stamp in the future is first set to now.
     */
    int CheckAndDelete(CCommData &data, int message);
    /**
     * Gives the TCP link (made if missing) a socket that the application accepted with its
     * own server. A socket held before is replaced without being closed. The channel owns
     * the socket from then on and destroys it with the link.
     */
    void SetSocket(QTcpSocket *socket);
    /// UDP with a link: the sender of the last datagram; otherwise empty.
    CString GetIPAddr(CCommData &data);
    /// Serial: the settings string; other kinds: "address:port". Empty for a null record.
    CString GetCommInfo(CCommData *data);
    /// As GetCommInfo with a kind prefix: "UDP:", "TCP:", or "TCP Server :" with the port only.
    CString GetCommInfoString(CCommData &data);
    /**
     * A slot of the process-wide 256-entry port table, under one process-wide mutex, after a
     * fixed 10 ms pause: the first free entry takes `port`; with `reuse` 0 an entry already
     * holding `port` is returned instead when it comes first. With no entry left the result
     * is 0, the same as the first slot: callers that fill the table cannot tell the two apart.
     */
    static int GetLanPortSequence(int port, int reuse);

    /// The owned link of each kind, made by the first CreateComm of that kind; null until then
    /// and after DeleteComm destroys it.
    ///@{
    CSerialComm *m_pSerialComm;
    CTcpSock *m_pTcpSock;
    CUdpSock *m_pUdpSock;
    ///@}
};
