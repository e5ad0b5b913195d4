#include <CFileEx.h>

#include <QtTest>
#include <QtWidgets>

#include <csignal>

#include <sys/resource.h>
#include <unistd.h>

class tst_CFileEx : public QObject
{
    Q_OBJECT

private slots:
    void init() { QVERIFY(m_dir.isValid()); }
    void split_data();
    void split();
    void pathParts_data();
    void pathParts();
    void makeFileAndExistence();
    void fileSave();
    void fileSaveShortWrite();
    void fileList();
    void deleteOldFile();

private:
    QString path(const char *name) const { return m_dir.filePath(QLatin1String(name)); }
    QByteArray path8(const char *name) const { return path(name).toLatin1(); }
    void touch(const char *name, const QByteArray &content = QByteArray())
    {
        QFile f(path(name));
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write(content);
    }
    QTemporaryDir m_dir;
};

void tst_CFileEx::split_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("path");
    QTest::addColumn<QStringList>("parts"); // drive, dir, name, extension
    QTest::addColumn<QString>("fullName");
    const QByteArray none;
    QTest::newRow("drive path") << none << QByteArray("C:/a/b/c.txt")
                                << QStringList {"C:/", "a/b", "c", "txt"} << "C:/a/b/c.txt";
    QTest::newRow("backslashes") << none << QByteArray("C:\\a\\c.txt")
                                 << QStringList {"C:\\", "a", "c", "txt"} << "C:\\a/c.txt";
    QTest::newRow("drive root doubles separator")
        << none << QByteArray("C:/c.txt") << QStringList {"C:/", "", "c", "txt"} << "C://c.txt";
    QTest::newRow("relative") << none << QByteArray("data/y.dat")
                              << QStringList {"", "data", "y", "dat"} << "data/y.dat";
    QTest::newRow("first dot splits") << none << QByteArray("/var/a.tar.gz")
                                      << QStringList {"", "/var", "a", "tar.gz"} << "/var/a.tar.gz";
    QTest::newRow("leading dot") << none << QByteArray("/home/.profile")
                                 << QStringList {"", "/home", "", "profile"} << "/home/.profile";
    QTest::newRow("no extension") << none << QByteArray("/home/README")
                                  << QStringList {"", "/home", "README", ""} << "/home/README";
    QTest::newRow("bare name keeps earlier dir")
        << QByteArray("C:/a/b/c.txt") << QByteArray("y.dat") << QStringList {".", "a/b", "y", "dat"}
        << ".a/b/y.dat";
    QTest::newRow("short dir keeps earlier dir") << QByteArray("C:/a/b/c.txt") << QByteArray("x/y")
                                                 << QStringList {"x", "a/b", "y", ""} << "xa/b/y";
}

void tst_CFileEx::split()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, path);
    QFETCH(QStringList, parts);
    QFETCH(QString, fullName);
    CFileEx f(before.constData());
    f.SetFullName(path.constData());
    QCOMPARE(
        QStringList({f.m_strDrive.text, f.m_strDir.text, f.GetName().text, f.GetExtName().text}),
        parts);
    QCOMPARE(f.GetFullName().text, fullName);
    QCOMPARE(f.GetPathName().text, parts[0] + parts[1]);
}

void tst_CFileEx::pathParts_data()
{
    QTest::addColumn<QByteArray>("path");
    QTest::addColumn<QString>("lastDir");
    QTest::addColumn<QString>("detached");
    QTest::newRow("file") << QByteArray("C:/a/b/c.txt") << "b"
                          << "C:/a/b/";
    QTest::newRow("trailing separator") << QByteArray("C:/a/b/") << "b"
                                        << "C:/a/";
    QTest::newRow("backslashes") << QByteArray("C:\\a\\b\\c.txt") << "b"
                                 << "C:\\a\\b\\";
    QTest::newRow("no separator") << QByteArray("c.txt") << ""
                                  << "c.txt";
    QTest::newRow("one separator") << QByteArray("/c.txt") << ""
                                   << "/";
    QTest::newRow("root stays") << QByteArray("/") << ""
                                << "/";
}

void tst_CFileEx::pathParts()
{
    QFETCH(QByteArray, path);
    QFETCH(QString, lastDir);
    QFETCH(QString, detached);
    CFileEx f;
    QCOMPARE(f.GetLastDir(path.constData()).text, lastDir);
    QCOMPARE(f.DetachLastDir(path.constData()).text, detached);
}

void tst_CFileEx::makeFileAndExistence()
{
    const QByteArray file = path8("x/y/z.dat");
    CFileEx f(file.constData());
    QCOMPARE(f.CheckExistence(0), 0);
    QCOMPARE(f.MakeFile(0), 1);
    QVERIFY(f.IsDirectory(path8("x/y").constData()));
    QCOMPARE(f.CheckExistence(file.constData(), 1), 1);
    QCOMPARE(f.GetPathName(file.constData()).text, path("x/y/"));
    QCOMPARE(f.GetPathName(path8("x/y").constData()).text, path("x/y"));

    touch("x/y/z.dat", QByteArray(1234, 'a'));
    QCOMPARE(f.GetFileSize(file.constData()), 1234);
    QCOMPARE(f.MakeFile(file.constData(), 0), 1); // empties an existing file
    QCOMPARE(f.GetFileSize(file.constData()), 0);
    QCOMPARE(CFileEx().CheckExistence(1), 0); // no name: no box either
    f.DeleteDirectory(path8("x").constData());
    QVERIFY(!QFileInfo::exists(path("x")));

    QString shown;
    QTimer closer;
    connect(&closer, &QTimer::timeout, this, [&shown] {
        if (auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget())) {
            shown = box->text();
            box->accept();
        }
    });
    closer.start(20);
    QCOMPARE(f.CheckExistence(1), 0);
    QCOMPARE(shown, QStringLiteral("File or Path(%1) is not found!").arg(path("x/y/z.dat")));
}

void tst_CFileEx::fileSave()
{
    CFileEx f;
    QByteArray file = path8("save.dat");
    char data[] = "new content";
    // Nothing there yet: a directory of that name is made and the save fails.
    QCOMPARE(f.FileSave(file.data(), data, 11), -1);
    QVERIFY(f.IsDirectory(file.constData()));

    file = path8("exists.dat");
    touch("exists.dat", "a much longer old content");
    QCOMPARE(f.FileSave(file.data(), data, 11), 0);
    QFile back(path("exists.dat"));
    QVERIFY(back.open(QIODevice::ReadOnly));
    QCOMPARE(back.readAll(), QByteArray("new content"));
}

void tst_CFileEx::fileSaveShortWrite()
{
    QByteArray file = path8("short.dat");
    touch("short.dat");
    QByteArray data(100000, 'z');
    QTemporaryFile out;
    QVERIFY(out.open());

    // Cap this process's file size so the write comes up short, and catch standard output.
    rlimit saved;
    QCOMPARE(getrlimit(RLIMIT_FSIZE, &saved), 0);
    rlimit small = saved;
    small.rlim_cur = 1000;
    const auto oldHandler = std::signal(SIGXFSZ, SIG_IGN);
    QCOMPARE(setrlimit(RLIMIT_FSIZE, &small), 0);
    std::fflush(stdout);
    const int oldStdout = dup(STDOUT_FILENO);
    dup2(out.handle(), STDOUT_FILENO);
    const int result = CFileEx().FileSave(file.data(), data.data(), data.size());
    dup2(oldStdout, STDOUT_FILENO);
    close(oldStdout);
    setrlimit(RLIMIT_FSIZE, &saved);
    std::signal(SIGXFSZ, oldHandler);

    QCOMPARE(result, -1);
    QVERIFY(out.seek(0));
    const QByteArray printed = out.readAll();
    QVERIFY2(printed.startsWith("Warn : " + file + " FileSave written "), printed);
    QVERIFY2(printed.endsWith(" bytes ( request = 100000 )\n"), printed);
}

void tst_CFileEx::fileList()
{
    QDir().mkpath(path("list/z.dat"));
    QDir().mkpath(path("list/m"));
    touch("list/b.dat");
    touch("list/a.dat");
    touch("list/c.txt");
    CStringArray list;
    list.Add(CString("kept"));
    CFileEx().GetFileList(list, path8("list/").constData(), {QStringLiteral("*.dat")},
                          QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot);
    QStringList names;
    for (int i = 0; i < list.GetSize(); ++i)
        names << list.GetAt(i).text;
    QCOMPARE(names, QStringList({"kept", "z.dat", "a.dat", "b.dat"}));
}

void tst_CFileEx::deleteOldFile()
{
    const QString root = path("dated/");
    const auto folder = [&root](int month, int day) {
        return root + QString::asprintf("2026/%02d/%02d/", month, day);
    };
    for (int day = 5; day <= 9; ++day)
        QVERIFY(QDir().mkpath(folder(11, day) + QStringLiteral("sub")));
    QVERIFY(QDir().mkpath(folder(10, 31)));

    CFileEx f;
    f.m_strDateRoot = CString(root);
    f.DeleteOldFile(QDateTime(QDate(2026, 11, 15), QTime(0, 30)));
    QVERIFY(!QFileInfo::exists(folder(11, 7)));
    QVERIFY(QFileInfo::exists(folder(11, 6)) && QFileInfo::exists(folder(11, 8)));

    // Later the same day, even with a longer period: no second folder goes.
    f.m_nKeepDays = 8;
    f.DeleteOldFile(QDateTime(QDate(2026, 11, 15), QTime(23, 59)));
    QVERIFY(QFileInfo::exists(folder(11, 6)));
    // A month later on the same day of the month: deliberately nothing either.
    f.DeleteOldFile(QDateTime(QDate(2026, 12, 15), QTime(12, 0)));
    QVERIFY(QFileInfo::exists(folder(11, 6)));

    // The next day removes only the folder (9 + 1) days back; older missed ones stay.
    f.m_nKeepDays = 9;
    f.DeleteOldFile(QDateTime(QDate(2026, 11, 16), QTime(8, 0)));
    QVERIFY(!QFileInfo::exists(folder(11, 6)));
    QVERIFY(QFileInfo::exists(folder(11, 5)) && QFileInfo::exists(folder(11, 8)));

    // Across a month boundary.
    f.m_nKeepDays = 7;
    f.DeleteOldFile(QDateTime(QDate(2026, 11, 8), QTime(12, 0)));
    QVERIFY(!QFileInfo::exists(folder(10, 31)));
}

QTEST_MAIN(tst_CFileEx)
#include "tst_cfileex.moc"
