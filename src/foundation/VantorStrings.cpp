// SPDX-License-Identifier: MIT
#include "VantorStrings.h"

#include "MutexLocker_p.h"

#include <QCoreApplication>
#include <QMutex>
#include <QThread>

CString VantorStrings::RDBKind[5] = {CString("Oracle"), CString("MariaDB"), CString("MS SQL(ODBC)"),
                                     CString("ODBC"), CString("PostgreSQL")};
CString VantorStrings::Language;
CString VantorStrings::InitFontName;
CString VantorStrings::PlumeVersion;
CString VantorStrings::Wexor;

namespace {
// The name is set once at start-up and read by message boxes from any thread; the lock keeps a
// late SetAppName from tearing a concurrent read.
QMutex appNameLock;
QString appName = QStringLiteral("Designer");
} // namespace

VantorStrings::VantorStrings(QObject *parent)
    : QObject(parent)
{ }

void VantorStrings::Init()
{
    Language = CString(tr("English"));
    InitFontName = CString(tr("Arial"));
    PlumeVersion = CString(QStringLiteral("3.3.3 beta3"));
    Wexor = CString(tr("Wexor Co., Ltd"));
}

void SetAppName(char const *name)
{
    const QString value = name ? QString::fromUtf8(name) : QString();
    VantorPrivate::MutexLocker<> locker(&appNameLock);
    appName = value;
}

QString GetAppName()
{
    VantorPrivate::MutexLocker<> locker(&appNameLock);
    return appName;
}

bool IsKorean()
{
    return VantorStrings::Language.text == QLatin1String("Korean");
}

int GetLanguage()
{
    const QString &language = VantorStrings::Language.text;
    if (language == QLatin1String("English"))
        return 0;
    if (language == QLatin1String("Chinese"))
        return 2;
    return 1;
}

void Sleep(int milliseconds)
{
    if (milliseconds > 0)
        QThread::msleep(static_cast<unsigned long>(milliseconds));
}

void PeekAndExeMessage()
{
    QCoreApplication::processEvents();
}

void PeekAndSleep(int milliseconds)
{
    const int rounds = milliseconds > 49 ? milliseconds / 50 : 1;
    for (int i = 0; i < rounds; ++i) {
        PeekAndExeMessage();
        Sleep(50);
    }
}
