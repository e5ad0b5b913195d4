// SPDX-License-Identifier: MIT
#include "Excel.h"

#include "CFileEx.h"
#include "CStringArray.h"

#include <QFileInfo>

CString Excel::FindExcelPathFile()
{
    CString found =
        FindExcelPathFile(CString(QStringLiteral("C:/Program Files/Microsoft Office")), true);
    if (found.IsEmpty())
        found = FindExcelPathFile(
            CString(QStringLiteral("C:/Program Files (x86)/Microsoft Office")), true);
    return found;
}

CString Excel::FindExcelPathFile(CString folder, bool recurse)
{
    CStringArray subfolders;
    CFileEx().GetFileList(subfolders, folder.text.toLatin1().constData(), QStringList(),
                          QDir::Dirs);
    for (int i = 0; i < subfolders.GetSize(); ++i) {
        const QString name = subfolders.GetAt(i).text;
        if (name == QLatin1String(".") || name == QLatin1String("..") ||
            name == QLatin1String("Updates"))
            continue;
        const QString sub = folder.text + QLatin1Char('/') + name;
        const QString program = sub + QLatin1String("/EXCEL.EXE");
        if (QFileInfo::exists(program))
            return CString(program);
        if (recurse) {
            const CString deeper = FindExcelPathFile(CString(sub), false);
            if (!deeper.IsEmpty())
                return deeper;
        }
    }
    return CString();
}

CString Excel::FindXlaPath()
{
    const CString program = FindExcelPathFile();
    if (program.IsEmpty())
        return CString();
    CFileEx file(program.text.toLatin1().constData());
    return CString(file.GetPathName().text + QLatin1String("/XLSTART/"));
}
