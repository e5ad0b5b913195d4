// SPDX-License-Identifier: MIT
#pragma once

#include "WinTypes.h"
#include "vantor_export.h"

/**
 * Whether a host answers one ICMP echo request within one second.
 *
 * On Linux the echo goes through an unprivileged ICMP datagram socket where
 * net.ipv4.ping_group_range admits the caller, else through a raw socket (which needs
 * CAP_NET_RAW, e.g. root). No external program is run.
 */
class VANTOR_EXPORT PingCheck
{
public:
    /**
     * Sends one echo request with 32 bytes of data ("Data Buffer", NUL, then zeros) to the
     * dotted IPv4 address and waits at most 1,000 ms for the matching reply (same identifier
     * and sequence; other ICMP traffic is ignored). Returns 1 when it came, else 0: also for
     * an address that does not convert, when no socket can be opened, or when the send fails
     * at once (no route). Only the result leaves the function; no report is logged.
     */
    static BOOL Execute(char const *address);
};
