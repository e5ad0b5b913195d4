// SPDX-License-Identifier: MIT
#include "ExePath.h"

#include <QCoreApplication>
#include <QFileInfo>

CString ExePath::GetExePath()
{
    QString dir;
    if (QCoreApplication::instance())
        dir = QCoreApplication::applicationDirPath();
#ifdef Q_OS_LINUX
    else
        dir = QFileInfo(QStringLiteral("/proc/self/exe"))
                  .canonicalFilePath()
                  .section(QLatin1Char('/'), 0, -2);
#endif
    return CString(dir + QLatin1Char('/'));
}

CString ExePath::GetAppPath()
{
    const CString exe = GetExePath();
    const QString &path = exe.text;
    const int above = path.lastIndexOf(QLatin1Char('/'), path.size() - 2);
    if (path.size() < 2 || above < 0)
        return exe;
    return CString(path.left(above + 1));
}
