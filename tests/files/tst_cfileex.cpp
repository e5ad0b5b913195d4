// SPDX-License-Identifier: MIT
#include <CFileEx.h>

#include <QtTest>
#include <QtWidgets>

#include <unistd.h>

class tst_CFileEx : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;
    QString path(const char *name) const { return m_dir.filePath(QLatin1String(name)); }
    QByteArray path8(const char *name) const { return path(name).toLatin1(); }
    void touch(const char *name, const QByteArray &content = QByteArray())
    {
        QFile f(path(name));
        QVERIFY(f.open(QIODevice::WriteOnly) && f.write(content) == content.size());
    }

private slots:
    void initTestCase() { QVERIFY(m_dir.isValid()); }

    void split_data()
    {
        QTest::addColumn<QString>("paths"); // set in turn, ">" between them
        // Drive, dir, name, extension, full name, last dir, path with the last part detached.
        QTest::addColumn<QString>("parts");
        const auto row = [](auto name, auto p, auto e) { QTest::newRow(name) << p << e; };
        row("drive path", "C:/a/b/c.txt", "C:/|a/b|c|txt|C:/a/b/c.txt|b|C:/a/b/");
        row("backslashes", "C:\\a\\c.txt", "C:\\|a|c|txt|C:\\a/c.txt|a|C:\\a\\");
        row("trailing separator", "C:/a/b/", "C:/|a/b|||C:/a/b/|b|C:/a/");
        row("drive root doubles separator", "C:/c.txt", "C:/||c|txt|C://c.txt||C:/");
        row("root", "/", "/||||//||/");
        row("relative", "data/y.dat", "|data|y|dat|data/y.dat||data/");
        row("first dot splits", "/var/a.tar.gz", "|/var|a|tar.gz|/var/a.tar.gz|var|/var/");
        row("leading dot", "/home/.profile", "|/home||profile|/home/.profile|home|/home/");
        row("no extension", "/home/README", "|/home|README||/home/README|home|/home/");
        // A directory part of two characters or fewer keeps the earlier directory.
        row("bare name", "C:/a/b/c.txt>y.dat", ".|a/b|y|dat|.a/b/y.dat||y.dat");
        row("short dir", "C:/a/b/c.txt>x/y", "x|a/b|y||xa/b/y||x/");
    }

    void split()
    {
        QFETCH(QString, paths);
        QFETCH(QString, parts);
        CFileEx f;
        QByteArray p;
        for (const QString &path : paths.split('>'))
            f.SetFullName(p = path.toLatin1());
        QCOMPARE(f.GetPathName().text, f.m_strDrive.text + f.m_strDir.text);
        QCOMPARE(
            QStringList({f.m_strDrive.text, f.m_strDir.text, f.GetName().text, f.GetExtName().text,
                         f.GetFullName().text, f.GetLastDir(p).text, f.DetachLastDir(p).text}),
            parts.split('|'));
    }

    void makeFileAndExistence()
    {
        const QByteArray file = path8("x/y/z.dat");
        CFileEx f(file);
        // Evaluated in order: missing, made with its folders, then there.
        QCOMPARE(QList<int>({f.CheckExistence(0), f.MakeFile(0), f.IsDirectory(path8("x/y")),
                             f.CheckExistence(file, 1)}),
                 QList<int>({0, 1, 1, 1}));
        QCOMPARE(f.GetPathName(file).text, path("x/y/"));
        QCOMPARE(f.GetPathName(path8("x/y")).text, path("x/y"));
        touch("x/y/z.dat", QByteArray(123, 'a'));
        // MakeFile empties an existing file.
        QCOMPARE(QList<int>({f.GetFileSize(file), f.MakeFile(file, 0), f.GetFileSize(file)}),
                 QList<int>({123, 1, 0}));
        QCOMPARE(CFileEx().CheckExistence(1), 0); // no name: no box either
        f.DeleteDirectory(path8("x"));
        QVERIFY(!QFileInfo::exists(path("x")));
        QString shown;
        QObject guard; // the box is looked for only while this test runs
        QTimer::singleShot(0, &guard, [&shown] {
            if (auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget())) {
                shown = box->text();
                box->accept();
            }
        });
        QCOMPARE(f.CheckExistence(1), 0);
        QCOMPARE(shown, QStringLiteral("File or Path(%1) is not found!").arg(path("x/y/z.dat")));
    }

    void fileSave()
    {
        QByteArray file = path8("new.dat");
        char data[] = "new content";
        // Nothing there yet: a directory of that name is made and the save fails.
        QCOMPARE(CFileEx().FileSave(file.data(), data, 11), -1);
        QVERIFY(QFileInfo(path("new.dat")).isDir());
        touch("old.dat", "a much longer old content");
        QCOMPARE(CFileEx().FileSave((file = path8("old.dat")).data(), data, 11), 0);
        QFile back(path("old.dat"));
        QVERIFY(back.open(QIODevice::ReadOnly));
        QCOMPARE(back.readAll(), QByteArray("new content"));
        // A short write fails and says so on standard output.
        QTemporaryFile out;
        QVERIFY(out.open() && QFileInfo::exists(QStringLiteral("/dev/full")));
        char full[] = "/dev/full";
        QByteArray big(100000, 'z');
        std::fflush(stdout);
        const int oldStdout = dup(STDOUT_FILENO), redirected = dup2(out.handle(), STDOUT_FILENO);
        const int result = CFileEx().FileSave(full, big.data(), big.size());
        dup2(oldStdout, STDOUT_FILENO);
        close(oldStdout);
        QCOMPARE(result, -1);
        QVERIFY(redirected == STDOUT_FILENO && out.seek(0));
        QCOMPARE(out.readAll(),
                 QByteArray("Warn : /dev/full FileSave written 0 bytes ( request = 100000 )\n"));
    }

    void fileList()
    {
        QVERIFY(QDir().mkpath(path("list/z.dat")) && QDir().mkpath(path("list/m")));
        for (const char *name : {"list/b.dat", "list/a.dat", "list/c.txt"})
            touch(name);
        CStringArray list;
        list.Add(CString("kept"));
        CFileEx().GetFileList(list, path8("list/"), {QStringLiteral("*.dat")},
                              QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot);
        QStringList names;
        for (int i = 0; i < list.GetSize(); ++i)
            names << list.GetAt(i).text;
        QCOMPARE(names, QStringList({"kept", "z.dat", "a.dat", "b.dat"}));
    }

    void deleteOldFile()
    {
        const QString root = path("dated/2026/");
        const auto has = [&root](const char *day) { return QFileInfo::exists(root + day); };
        for (const char *day : {"11/05", "11/06", "11/07", "11/08", "11/09", "10/31"})
            QVERIFY(QDir().mkpath(root + day + "/sub"));
        CFileEx f;
        f.m_strDateRoot = CString(path("dated/"));
        const auto run = [&f](int keepDays, int month, int day, int hour) {
            f.m_nKeepDays = keepDays;
            f.DeleteOldFile(QDateTime(QDate(2026, month, day), QTime(hour, 30)));
        };
        f.DeleteOldFile(QDateTime(QDate(2026, 11, 15), QTime(0, 30))); // 7 days by default
        QVERIFY(!has("11/07") && has("11/06") && has("11/08"));
        // Later the same day, even with a longer period: no second folder goes; nor a month
        // later on the same day of the month.
        run(8, 11, 15, 23);
        run(8, 12, 15, 12);
        QVERIFY(has("11/06"));
        // The next day removes only the folder (9 + 1) days back; older missed ones stay.
        run(9, 11, 16, 8);
        QVERIFY(!has("11/06") && has("11/05") && has("11/08"));
        run(7, 11, 8, 12); // across a month boundary
        QVERIFY(!has("10/31"));
    }
};

QTEST_MAIN(tst_CFileEx)
#include "tst_cfileex.moc"
