// SPDX-License-Identifier: MIT
#pragma once

// The library's own access to CCommonQueue beyond its public interface. Not installed.

#include "CCommonQueue.h"

struct CCommonQueuePrivate
{
    /**
     * Add, for a caller that serialises its adders itself and whose taker reads only the first
     * `bytes` bytes of a record: copies those and leaves the rest of the slot as an earlier
     * record left it. Takes no lock. The message log adds its text and terminating zero so.
     */
    static BOOL addPrefix(CCommonQueue &queue, const char *data, int bytes, int timeOut, int retry);
};
