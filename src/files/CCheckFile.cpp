// SPDX-License-Identifier: MIT
#include "CCheckFile.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>

#include <climits>

CCheckFile::CCheckFile()
    : m_nMode(0)
    , m_nInterval(2000)
    , m_nLastCheck(0)
    , m_nLastTime(0)
    , m_nLastCount(0)
{ }

int CCheckFile::SetInfo(CString path, int mode, int intervalSeconds)
{
    m_strPath = path;
    m_nMode = mode;
    m_nInterval =
        static_cast<int>(qBound(qint64(INT_MIN), qint64(intervalSeconds) * 1000, qint64(INT_MAX)));
    if (m_nMode == 0)
        m_nLastTime = GetFileTime();
    return 1;
}

int CCheckFile::SetInfo(char const *path, int mode, int intervalSeconds)
{
    return SetInfo(CString(path), mode, intervalSeconds);
}

qint64 CCheckFile::GetFileTime()
{
    const QFileInfo info(m_strPath.text);
    if (!info.exists())
        return 0;
    return info.lastModified().toMSecsSinceEpoch();
}

int CCheckFile::IsChanged()
{
    const qint64 now = QDateTime::currentMSecsSinceEpoch();
    qint64 elapsed = now - m_nLastCheck;
    if (m_nLastCheck > now) { // the clock was set back
        m_nLastCheck = now;
        elapsed = 0;
    }
    if (elapsed < m_nInterval)
        return 0;
    m_nLastCheck = now;

    if (m_nMode == 0) {
        const qint64 time = GetFileTime();
        if (time == m_nLastTime)
            return 0;
        m_nLastTime = time;
        return 1;
    }

    // The folder's record files and folders, counted as CFileEx::GetFileList lists them, but
    // from the Unicode path so that a non-Latin-1 folder name works too.
    const QDir dir(m_strPath.text);
    const int count = dir.entryList(QStringList() << QStringLiteral("*.dat"),
                                    QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot)
                          .size();
    if (count == m_nLastCount)
        return 0;
    m_nLastCount = count;
    return 1;
}
