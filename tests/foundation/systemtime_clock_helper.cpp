// SPDX-License-Identifier: MIT
// Asks SetLocalTimeEx to set the clock from inside an unprivileged user namespace, where the
// real clock is out of reach. Exit code: 0 refused with EPERM, 10 accepted, 11 not inside a
// user namespace (nothing tried), 12 refused with another errno, 13 an impossible date was
// passed on to the clock.
#include "SystemTime.h"

#include <QFile>

#include <cerrno>

int main()
{
    // The initial user namespace maps the full id range; never try the clock there.
    QFile map(QStringLiteral("/proc/self/uid_map"));
    if (!map.open(QIODevice::ReadOnly) || map.readAll().contains("4294967295"))
        return 11;

    // Now, so that even a clock that accepted the call would not move.
    const QDateTime now = QDateTime::currentDateTime();
    SYSTEMTIME st = {WORD(now.date().year()),   WORD(now.date().month()), 0,
                     WORD(now.date().day()),    WORD(now.time().hour()),  WORD(now.time().minute()),
                     WORD(now.time().second()), WORD(now.time().msec())};
    errno = 0;
    if (SetLocalTimeEx(&st))
        return 10;
    if (errno != EPERM)
        return 12;
    st.wMonth = 13;
    errno = 0;
    return SetLocalTimeEx(&st) || errno != 0 ? 13 : 0;
}
