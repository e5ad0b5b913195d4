// SPDX-License-Identifier: MIT
#pragma once

// Real database peers for the tests: a PostgreSQL and a MariaDB server in throwaway folders on
// free loopback ports (started through tests/support/*-server.sh), and a private unixODBC set-up
// with the SQLite3 driver (a database file) and psqlODBC against the PostgreSQL server.
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>

#include <dlfcn.h>
#include <netinet/in.h>
#include <signal.h>
#include <sys/socket.h>
#include <unistd.h>

class DbServer
{
public:
    DbServer(const QString &script, const QString &dir)
        : m_script(QStringLiteral(VANTOR_SUPPORT_DIR "/") + script)
        , m_dir(dir)
    { }
    ~DbServer() { stop(); }

    /// Starts (or restarts, on the same port and data) the server; false with `error` set.
    bool start(QString *error)
    {
        if (port == 0)
            port = freePort();
        QProcess p;
        p.start(QStringLiteral("bash"),
                {m_script, QStringLiteral("start"), m_dir, QString::number(port)});
        if (!p.waitForFinished(120000) || p.exitCode() != 0) {
            p.kill();
            p.waitForFinished(5000);
            *error =
                m_script + QStringLiteral(": ") + QString::fromLocal8Bit(p.readAllStandardError());
            return false;
        }
        const QString out = QString::fromLocal8Bit(p.readAllStandardOutput()).trimmed();
        pid = out.section(QLatin1Char('='), 1).toInt();
        return pid > 0;
    }
    /// Orderly shutdown through the script.
    void stop()
    {
        if (pid <= 0)
            return;
        QProcess p;
        p.start(QStringLiteral("bash"), {m_script, QStringLiteral("stop"), m_dir});
        p.waitForFinished(90000);
        pid = 0;
    }
    /// Sends `signal` to the server's own PID and waits (bounded) until it has gone.
    bool killAndWait(int signal)
    {
        if (pid <= 0 || ::kill(pid, signal) != 0)
            return false;
        for (int i = 0; i < 600 && ::kill(pid, 0) == 0; ++i)
            QThread::msleep(50);
        const bool gone = ::kill(pid, 0) != 0;
        if (gone)
            pid = 0;
        return gone;
    }

    static int freePort()
    {
        const int fd = ::socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in a {};
        a.sin_family = AF_INET;
        a.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t len = sizeof a;
        int port = 0;
        if (::bind(fd, reinterpret_cast<sockaddr *>(&a), sizeof a) == 0 &&
            ::getsockname(fd, reinterpret_cast<sockaddr *>(&a), &len) == 0)
            port = ntohs(a.sin_port);
        ::close(fd);
        return port;
    }

    int port = 0;
    int pid = 0;

private:
    QString m_script;
    QString m_dir;
};

/// Why the server tests cannot run here, or an empty text when the servers are installed.
inline QString serversMissing()
{
    const char *needed[] = {"/usr/lib/postgresql/15/bin/initdb", "/usr/sbin/mariadbd",
                            "/usr/bin/mariadb-install-db"};
    for (const char *path : needed)
        if (!QFileInfo::exists(QString::fromLatin1(path)))
            return QStringLiteral("%1 is not installed (PostgreSQL 15 / MariaDB packages)")
                .arg(QString::fromLatin1(path));
    return QString();
}

/// Writes a private odbcinst.ini and odbc.ini into `dir` and points unixODBC at them. DSNs:
/// VantorLite (SQLite3, file `liteFile`) and VantorPG (psqlODBC, database vantor on `pgPort`).
inline void setUpOdbc(const QString &dir, const QString &liteFile, int pgPort)
{
    QFile inst(dir + QStringLiteral("/odbcinst.ini"));
    inst.open(QIODevice::WriteOnly);
    inst.write("[SQLite3]\nDriver=libsqlite3odbc.so\n\n"
               "[PostgreSQL Unicode]\nDriver=psqlodbcw.so\nDebug=0\nCommLog=0\n");
    inst.close();
    QFile ini(dir + QStringLiteral("/odbc.ini"));
    ini.open(QIODevice::WriteOnly);
    ini.write(QStringLiteral("[VantorLite]\nDriver=SQLite3\nDatabase=%1\n\n"
                             "[VantorPG]\nDriver=PostgreSQL Unicode\nServername=127.0.0.1\n"
                             "Port=%2\nDatabase=vantor\n")
                  .arg(liteFile)
                  .arg(pgPort)
                  .toUtf8());
    ini.close();
    qputenv("ODBCSYSINI", QFile::encodeName(dir));
    qputenv("ODBCINI", QFile::encodeName(dir + QStringLiteral("/odbc.ini")));
    // libodbcinst keeps what it has read in static memory and is unloaded together with the
    // last driver that uses it, which a leak checker then reports as lost: keep it loaded.
    dlopen("libodbcinst.so.2", RTLD_NOW | RTLD_NODELETE);
}
