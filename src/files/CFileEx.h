// SPDX-License-Identifier: MIT
#pragma once

#include "CString.h"
#include "CStringArray.h"
#include "vantor_export.h"

#include <QDir>
#include <QStringList>

class QDateTime;

/**
 * A file name split into drive, directory, base name and extension, with a set of file-system
 * helpers and the retention of dated folders.
 *
 * Paths given as `char const*` are taken as Latin-1. A day's folder is named
 * "<m_strDateRoot><yyyy>/<mm>/<dd>/"; the application files its records there and
 * DeleteOldFile() removes the folder that has just left the retention period.
 */
class VANTOR_EXPORT CFileEx
{
public:
    /// No path yet; dated folders are kept 7 days (m_nKeepDays).
    CFileEx();
    /// Constructs and calls SetFullName(path).
    explicit CFileEx(char const *path);

    /// Does nothing; kept for callers that call it.
    void Init();
    /// Does nothing; kept for callers that call it.
    void Delete();

    /**
     * Splits `path` into the name members. The directory part (before the last separator, "."
     * when there is none) goes to m_strDrive; when it is longer than two characters it is
     * split further: "C:/a/b" gives drive "C:/" and directory "a/b", "data" gives an empty
     * drive and directory "data". A directory part of two characters or fewer leaves m_strDir
     * as it was, deliberately, so a relative name set after an absolute one keeps the earlier
     * directory. The base name runs to the first dot, the extension is everything after it
     * ("a.tar.gz": name "a", extension "tar.gz"). Both "/" and "\" separate; a root ("/" or
     * "C:/") keeps its separator.
     */
    void SetFullName(char const *path);
    /// The base name last set by SetFullName: up to the first dot, without folder.
    CString GetName();
    /// The extension last set by SetFullName or SetExtName, without its leading dot.
    CString GetExtName();
    /// Sets m_strExt; returns 1.
    int SetExtName(char const *ext);
    /// The name, then "." and the extension when there is one.
    CString GetNameExt();
    /// m_strDrive followed by m_strDir ("C:/data/log" for C:/data/log/a.txt).
    CString GetPathName();
    /// Drive, directory, "/", name and extension. "C:/c.txt" comes back as "C://c.txt".
    CString GetFullName();
    /**
     * The folder of an existing file with its trailing "/" (the whole path when it holds no
     * "/"); any other path comes back unchanged.
     */
    CString GetPathName(char const *path);
    /// The name between the last two separators ("\" or "/"); empty with fewer than two.
    CString GetLastDir(char const *path);
    /// The path without its last component, keeping the separator before it; a trailing
    /// separator is not a component. A path without separator comes back unchanged.
    CString DetachLastDir(char const *path);
    /// True when `path` (Latin-1) names an existing directory, or a link to one; false for "".
    bool IsDirectory(char const *path);

    /// Creates the directory with its missing parents when nothing of that name exists.
    void MakePath(char const *path);
    /// MakePath(GetPathName()) unless that is empty.
    void MakePath();
    /**
     * Creates the object's own folder (MakePath()), then creates or empties the file `name`.
     * `unused` is ignored. Returns 1 when the file could be opened, 0 otherwise or for an
     * empty name.
     */
    int MakeFile(char const *name, int unused = 0);
    /// MakeFile(GetFullName(), unused).
    int MakeFile(int unused = 0);
    /**
     * 1 when the file or directory exists, else 0; with `showMessage` nonzero a missing path is
     * also reported in a message box "File or Path(<path>) is not found!".
     */
    int CheckExistence(char const *path, int showMessage = 0);
    /// CheckExistence(GetFullName(), showMessage); 0 without a message for an empty name.
    int CheckExistence(int showMessage = 0);
    /// The file's size, truncated to 32 bits; 0 also when it cannot be opened.
    int GetFileSize(char const *path);
    /**
     * Replaces the content of the existing file `path` by `count` bytes of `data`.
     * It first calls MakePath(path) on the file's own name, deliberately: where nothing of
     * that name exists, a directory is created and the save fails. So FileSave only rewrites
     * files that already exist. A short write is reported on standard output. Returns 0 on
     * success, -1 on failure.
     */
    int FileSave(char *path, char *data, int count);
    /// Removes the directory with all its content, if it exists.
    void DeleteDirectory(char const *path);
    /**
     * Removes the one dated folder of the day (m_nKeepDays + 1) days back, at most once per day
     * of the month: a call on the day of the month in m_nLastDay does nothing. Folders missed
     * on days the application did not run are left. A negative m_nKeepDays removes nothing.
     */
    void DeleteOldFile();
    /// DeleteOldFile() with `now` (local time) in place of the current time.
    void DeleteOldFile(const QDateTime &now);
    /**
     * Appends the names (not paths) of the entries of `dir` that match `nameFilters` and
     * `filters`, sorted by name with directories first. The array is not emptied first.
     */
    void GetFileList(CStringArray &list, char const *dir, QStringList nameFilters = QStringList(),
                     QFlags<QDir::Filter> filters = QDir::NoFilter);
    /// Appends what QDir lists for the current directory with "*.*" and the drive filter.
    void GetDriveList(CStringArray &list);

    /// Drive with its separator ("C:/"), or the whole directory part when that is short.
    CString m_strDrive;
    /// Directory after the drive, without trailing separator.
    CString m_strDir;
    /// Base name: the file name up to its first dot.
    CString m_strName;
    /// Everything after the first dot of the file name.
    CString m_strExt;
    /// Root of the dated folders, used as it stands: it must end with a separator.
    CString m_strDateRoot;
    /// Retention of the dated folders in days.
    int m_nKeepDays;
    /// Day of the month on which old folders were last looked for; 0 at first.
    int m_nLastDay;
};
