// SPDX-License-Identifier: MIT
#pragma once

#include "CString.h"
#include "vantor_export.h"

class QSharedMemory;

/**
 * A handle to a named shared-memory segment. The segment object is made by the first Create
 * or Open; later calls reuse it and ignore the name they are given.
 * Names given as 8-bit text are taken as Latin-1 bytes.
 */
class VANTOR_EXPORT CSharedMem
{
public:
    CSharedMem();
    /// Same as Delete().
    ~CSharedMem();

    /**
     * Creates a segment of nSize bytes, read-write, and attaches to it. False when a segment of
     * that key already exists. Once a segment object exists, the name is ignored.
     */
    bool Create(char const *pName, int nSize);
    /// The CString's 8-bit (UTF-8) bytes are the name.
    bool Create(CString strName, int nSize);
    /// Attaches read-write to an existing segment; true at once when already attached.
    bool Open(char const *pName);
    /// Open() with the CString's 8-bit (UTF-8) bytes as the name.
    bool Open(CString strName);

    /// Bytes of the attached segment; 0 before Create or Open.
    int Size();
    /// The segment's data; null when not attached.
    void *GetPtr();

    /// Takes the system-wide lock of the segment. False without a segment object.
    bool Lock();
    /// Releases the lock only when Lock was called before; without one, nothing is released.
    bool Unlock();
    /// Detaches and forgets the segment object; true when there was none.
    bool Delete();

protected:
    /// The segment object made by Create or Open; null before and after Delete.
    QSharedMemory *m_pSharedMem;
    /// True between a successful Lock and the next Unlock.
    bool m_bLocked;

private:
    CSharedMem(const CSharedMem &) = delete;
    CSharedMem &operator=(const CSharedMem &) = delete;
    void make(char const *pName);
};
