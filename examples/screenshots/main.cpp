// SPDX-License-Identifier: MIT
// vantor-screenshots: shows the message dialog, the question dialog, the waiting window and the
// database settings dialog one after another, waits until each has painted on screen, and saves
// each as a PNG file.
// Usage: vantor-screenshots OUTPUT_DIR   (needs a display; scripts/screenshots.sh uses Xvfb)
#include <Vantor.h>

#include <QApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QPixmap>
#include <QTextStream>

namespace {

// Counts the paint events a widget receives, so that a grab never shows an unpainted window.
class PaintWatch : public QObject
{
public:
    int paints = 0;

protected:
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::Paint)
            ++paints;
        return false;
    }
};

bool showAndSave(QWidget *w, const QDir &dir, const QString &name)
{
    PaintWatch watch;
    w->installEventFilter(&watch);
    w->show();
    const QDeadlineTimer deadline(5000);
    while (watch.paints == 0 && !deadline.hasExpired())
        QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
    w->removeEventFilter(&watch);
    if (watch.paints == 0) {
        QTextStream(stderr) << name << ": the window never painted\n";
        return false;
    }
    const QString file = dir.filePath(name);
    if (!w->grab().save(file)) {
        QTextStream(stderr) << file << ": cannot be written\n";
        return false;
    }
    QTextStream(stdout) << "painted and saved " << file << '\n';
    w->hide();
    return true;
}

} // namespace

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    if (argc != 2) {
        QTextStream(stderr) << "usage: vantor-screenshots OUTPUT_DIR\n";
        return 2;
    }
    const QDir dir(QString::fromLocal8Bit(argv[1]));
    if (!QDir().mkpath(dir.path()))
        return 1;
    SetAppName("Screenshots");

    bool ok = true;
    MessageBoxDlg message;
    message.SetMessage(QStringLiteral("Tank 2 level is below 15 %. Check the feed pump."));
    ok = showAndSave(&message, dir, QStringLiteral("messageboxdlg.png")) && ok;

    AskBoxDlg ask;
    ask.SetMessage(QStringLiteral("Stop the line and save today's production records now?"));
    ok = showAndSave(&ask, dir, QStringLiteral("askboxdlg.png")) && ok;

    DialogExecuting executing(nullptr, CString("Exporting today's records (1,240 of 2,000)..."),
                              Qt::WindowFlags());
    executing.SetRange(2000);
    executing.SetPos(1240);
    ok = showAndSave(&executing, dir, QStringLiteral("dialogexecuting.png")) && ok;

    SqlInfo info;
    info.nKind = 1;
    info.bRemote = 1;
    info.strServer = CString("192.168.10.20");
    info.strUser = CString("plant");
    info.strPassword = CString("secret");
    DialogSetRDBInfo rdb(nullptr, &info);
    ok = showAndSave(&rdb, dir, QStringLiteral("dialogsetrdbinfo.png")) && ok;

    return ok ? 0 : 1;
}
