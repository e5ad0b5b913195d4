// SPDX-License-Identifier: MIT
#pragma once

#include "vantor_export.h"

#include <QSharedMemory>
#include <QString>

/**
 * A named block of fixed size in shared memory: attach to it if it exists, otherwise create it,
 * and copy the whole block in or out.
 *
 * Set and Get take no lock. Processes that share a block bracket their access with the
 * inherited lock() and unlock().
 */
class VANTOR_EXPORT CommonSM : public QSharedMemory
{
public:
    CommonSM();
    /// nSize bytes under strKey; nothing is attached yet.
    CommonSM(int nSize, QString strKey);
    ~CommonSM() override;

    /**
     * Sets the key, size and name. A data pointer already reached is kept while the segment
     * stays attached (the same key); a new key detaches and the block is reached afresh.
     */
    void SetInfo(int nSize, QString strKey);
    /// The block's data, attaching read-write on first use; null when the segment does not exist.
    void *GetSharedMem();
    /**
     * Attaches to an existing block, leaving its content alone, or creates the block and zeroes
     * it. False when neither gives a data pointer.
     */
    bool Init();
    /// Copies the block size in bytes from pData into the block. False when it cannot be reached.
    bool Set(void *pData);
    /// Same as GetSharedMem().
    void *Get();

protected:
    /// The attached block's data; null until Init succeeds.
    void *m_pData;
    /// Size of the block in bytes, as given to the constructor or SetInfo.
    int m_nSize;
    /// The key of the block.
    QString m_strName;

private:
    Q_DISABLE_COPY(CommonSM)
};
