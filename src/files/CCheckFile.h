// SPDX-License-Identifier: MIT
#pragma once

#include "CString.h"
#include "vantor_export.h"

#include <QtGlobal>

/**
 * Polls a path for change at a fixed interval: in mode 0 the modification time of a file, in
 * any other mode the number of record files ("*.dat") in a folder.
 *
 * IsChanged() does the work at most once per interval, so it can be called from a timer or a
 * loop as often as is convenient; calls in between report no change whatever happened.
 */
class VANTOR_EXPORT CCheckFile
{
public:
    /// Watches the modification time (mode 0), checking at most every 2,000 ms.
    CCheckFile();

    /**
     * Watches `path` in `mode` every `intervalSeconds` seconds. In mode 0 the file's present
     * modification time is the starting point, so only later changes count. Returns 1.
     */
    int SetInfo(CString path, int mode, int intervalSeconds);
    /// The same with a UTF-8 path.
    int SetInfo(char const *path, int mode, int intervalSeconds);
    /// The path's last modification time in milliseconds since 1970 (UTC); 0 when it is missing.
    qint64 GetFileTime();
    /**
     * 1 when the watched time or count differs from the one seen at the last check, else 0.
     * Within the interval since the last check it returns 0 without looking. A clock set back
     * restarts the interval. A file that disappears counts as changed once; in folder mode the
     * first check reports a change when the folder holds any record files.
     */
    int IsChanged();

protected:
    /// The watched file or folder.
    CString m_strPath;
    /// 0: the file's modification time; other: the number of "*.dat" entries of the folder.
    int m_nMode;
    /// Milliseconds between two checks.
    int m_nInterval;
    /// When the last check was made, in milliseconds since 1970.
    qint64 m_nLastCheck;
    /// The modification time seen at the last check.
    qint64 m_nLastTime;
    /// The number of record files seen at the last check.
    int m_nLastCount;
};
