// SPDX-License-Identifier: MIT
#include "CFileEx.h"

#include "FileNotice_p.h"
#include "SystemTime.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>

#include <cstdio>

namespace {

bool isSeparator(QChar c)
{
    return c == QLatin1Char('/') || c == QLatin1Char('\\');
}

int lastSeparator(const QString &path, int from)
{
    for (int i = from; i >= 0; --i) {
        if (isSeparator(path.at(i)))
            return i;
    }
    return -1;
}

QString latin1(char const *text)
{
    return text ? QString::fromLatin1(text) : QString();
}

void makePath(const QString &path)
{
    if (!path.isEmpty() && !QFileInfo::exists(path))
        QDir().mkpath(path);
}

bool fileExists(const QString &path)
{
    return !path.isEmpty() && QFileInfo::exists(path);
}

int checkExistence(const QString &path, int showMessage)
{
    if (fileExists(path))
        return 1;
    if (showMessage) {
        const QByteArray text = "File or Path(" + path.toLatin1() + ") is not found!";
        VantorPrivate::ShowFileNotice(text.constData());
    }
    return 0;
}

int makeFile(CFileEx &self, const QString &name)
{
    if (name.isEmpty())
        return 0;
    self.MakePath();
    QFile file(name);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return 0;
    file.close();
    return 1;
}

void deleteDirectory(const QString &path)
{
    // An empty name would be the current directory: never remove that by accident.
    if (path.isEmpty())
        return;
    QDir dir(path);
    if (dir.exists())
        dir.removeRecursively();
}

} // namespace

CFileEx::CFileEx()
    : m_nKeepDays(7)
    , m_nLastDay(0)
{ }

CFileEx::CFileEx(char const *path)
    : CFileEx()
{
    SetFullName(path);
}

void CFileEx::Init() { }

void CFileEx::Delete() { }

void CFileEx::SetFullName(char const *path)
{
    const QString full = latin1(path);
    const int sep = lastSeparator(full, full.size() - 1);
    QString dir;
    if (sep < 0)
        dir = QStringLiteral(".");
    else if (sep == 0)
        dir = full.left(1); // the root keeps its separator
    else if (sep == 2 && full.at(1) == QLatin1Char(':'))
        dir = full.left(3); // so does a drive root, "C:/"
    else
        dir = full.left(sep);

    if (dir.size() > 2) {
        if (dir.at(1) == QLatin1Char(':')) {
            m_strDir = CString(dir.mid(3));
            m_strDrive = CString(dir.left(3));
        } else {
            m_strDir = CString(dir);
            m_strDrive = CString();
        }
    } else {
        // The directory is deliberately left as it was.
        m_strDrive = CString(dir);
    }

    const QString fileName = full.mid(sep + 1);
    const int dot = fileName.indexOf(QLatin1Char('.'));
    if (dot < 0) {
        m_strName = CString(fileName);
        m_strExt = CString();
    } else {
        m_strName = CString(fileName.left(dot));
        m_strExt = CString(fileName.mid(dot + 1));
    }
}

CString CFileEx::GetName()
{
    return m_strName;
}

CString CFileEx::GetExtName()
{
    return m_strExt;
}

int CFileEx::SetExtName(char const *ext)
{
    m_strExt = CString(latin1(ext));
    return 1;
}

CString CFileEx::GetNameExt()
{
    if (m_strExt.IsEmpty())
        return m_strName;
    return CString(m_strName.text + QLatin1Char('.') + m_strExt.text);
}

CString CFileEx::GetPathName()
{
    return CString(m_strDrive.text + m_strDir.text);
}

CString CFileEx::GetFullName()
{
    return CString(m_strDrive.text + m_strDir.text + QLatin1Char('/') + GetNameExt().text);
}

CString CFileEx::GetPathName(char const *path)
{
    const QString p = latin1(path);
    if (!QFileInfo(p).isFile())
        return CString(p);
    const int slash = p.lastIndexOf(QLatin1Char('/'));
    return CString(slash < 0 ? p : p.left(slash + 1));
}

CString CFileEx::GetLastDir(char const *path)
{
    const QString p = latin1(path);
    const int last = lastSeparator(p, p.size() - 1);
    if (last <= 0)
        return CString();
    const int before = lastSeparator(p, last - 1);
    if (before < 0)
        return CString();
    return CString(p.mid(before + 1, last - before - 1));
}

CString CFileEx::DetachLastDir(char const *path)
{
    const QString p = latin1(path);
    int from = p.size() - 1;
    if (from >= 0 && isSeparator(p.at(from)))
        --from; // a trailing separator is not a component of its own
    const int sep = lastSeparator(p, from);
    if (sep < 0)
        return CString(p);
    return CString(p.left(sep + 1));
}

bool CFileEx::IsDirectory(char const *path)
{
    const QString p = latin1(path);
    return !p.isEmpty() && QFileInfo(p).isDir();
}

void CFileEx::MakePath(char const *path)
{
    makePath(latin1(path));
}

void CFileEx::MakePath()
{
    makePath(GetPathName().text);
}

int CFileEx::MakeFile(char const *name, int unused)
{
    Q_UNUSED(unused)
    return makeFile(*this, latin1(name));
}

int CFileEx::MakeFile(int unused)
{
    Q_UNUSED(unused)
    if (m_strDrive.IsEmpty() && m_strDir.IsEmpty() && m_strName.IsEmpty() && m_strExt.IsEmpty())
        return 0; // no name set
    return makeFile(*this, GetFullName().text);
}

int CFileEx::CheckExistence(char const *path, int showMessage)
{
    return checkExistence(latin1(path), showMessage);
}

int CFileEx::CheckExistence(int showMessage)
{
    if (m_strDrive.IsEmpty() && m_strDir.IsEmpty() && m_strName.IsEmpty() && m_strExt.IsEmpty())
        return 0; // no name set: no message either
    return checkExistence(GetFullName().text, showMessage);
}

int CFileEx::GetFileSize(char const *path)
{
    QFile file(latin1(path));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    const qint64 size = file.size();
    file.close();
    return int(size);
}

int CFileEx::FileSave(char *path, char *data, int count)
{
    if (!path || !*path || count < 0 || (!data && count > 0))
        return -1;
    // Deliberately on the file's own name: where nothing exists yet this makes a directory and
    // the open below fails, so only existing files are rewritten.
    MakePath(path);
    FILE *fp = std::fopen(path, "wb");
    if (!fp)
        return -1;
    const size_t written = count > 0 ? std::fwrite(data, 1, size_t(count), fp) : 0;
    if (written < size_t(count)) {
        std::printf("Warn : %s FileSave written %d bytes ( request = %d )\n", path, int(written),
                    count);
        std::fflush(stdout);
        std::fclose(fp);
        return -1;
    }
    std::fclose(fp);
    return 0;
}

void CFileEx::DeleteDirectory(char const *path)
{
    deleteDirectory(latin1(path));
}

void CFileEx::DeleteOldFile()
{
    DeleteOldFile(QDateTime::currentDateTime());
}

void CFileEx::DeleteOldFile(const QDateTime &now)
{
    const QDateTime local = now.toLocalTime();
    const int day = local.date().day();
    if (day == m_nLastDay)
        return;
    m_nLastDay = day;
    if (m_nKeepDays < 0)
        return; // a negative period would reach today's folder or later ones

    SYSTEMTIME st;
    st.wYear = WORD(local.date().year());
    st.wMonth = WORD(local.date().month());
    st.wDayOfWeek = WORD(local.date().dayOfWeek());
    st.wDay = WORD(day);
    st.wHour = WORD(local.time().hour());
    st.wMinute = WORD(local.time().minute());
    st.wSecond = WORD(local.time().second());
    st.wMilliseconds = WORD(local.time().msec());
    FILETIME ft;
    SystemTimeToFileTime(&st, &ft, true);
    qint64 ms = qint64((quint64(ft.dwHighDateTime) << 32) | ft.dwLowDateTime);
    ms -= (qint64(m_nKeepDays) + 1) * 86400000;
    ft.dwLowDateTime = DWORD(quint64(ms) & 0xFFFFFFFFu);
    ft.dwHighDateTime = DWORD(quint64(ms) >> 32);
    FileTimeToSystemTime(&ft, &st, true);

    const QString folder = QString::asprintf("%04d/%02d/%02d/", st.wYear, st.wMonth, st.wDay);
    deleteDirectory(m_strDateRoot.text + folder);
}

void CFileEx::GetFileList(CStringArray &list, char const *dir, QStringList nameFilters,
                          QFlags<QDir::Filter> filters)
{
    QString path = latin1(dir);
    if (path.size() > 3 && isSeparator(path.at(path.size() - 1)))
        path.chop(1);
    const QStringList names =
        QDir(path).entryList(nameFilters, filters, QDir::Name | QDir::DirsFirst);
    for (const QString &name : names)
        list.Add(CString(name));
}

void CFileEx::GetDriveList(CStringArray &list)
{
    const QStringList names =
        QDir().entryList(QStringList {QStringLiteral("*.*")}, QDir::Drives, QDir::NoSort);
    for (const QString &name : names)
        list.Add(CString(name));
}
