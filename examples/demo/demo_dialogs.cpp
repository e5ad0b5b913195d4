// SPDX-License-Identifier: MIT
// Dialogs: the large-type message and question boxes and the single waiting window.
#include "Demo.h"

#include <Vantor.h>

#include <QEventLoop>
#include <QTimer>

static int run(DemoContext &ctx)
{
    if (!ctx.gui) {
        demoSay(QStringLiteral("the dialogs need a display: run the tour with --gui to see them"));
        return 0;
    }

    MessageBoxW(nullptr, "Tank 2 level is below 15 %. Check the feed pump.", nullptr, MB_OK);
    const int answer = MessageBoxW(nullptr, "Show the waiting window now?", nullptr, MB_YESNO);
    demoSay(QStringLiteral("MessageBoxW(MB_YESNO) answered %1 (%2)")
                .arg(answer)
                .arg(answer == IDYES ? QStringLiteral("IDYES") : QStringLiteral("IDNO")));
    if (answer != IDYES)
        return 0;

    // A long job reports through the one waiting window; Cancel ends the wait early.
    DialogExecuting::Execute(nullptr, CString("Exporting today's records..."), Qt::WindowFlags());
    DialogExecuting::ExecutingDlg->SetRange(100);
    QEventLoop loop;
    QTimer step;
    int done = 0;
    QObject::connect(&step, &QTimer::timeout, &loop, [&] {
        if (!DialogExecuting::ExecutingDlg) { // cancelled by the user
            loop.quit();
            return;
        }
        done += 5;
        DialogExecuting::ExecutingDlg->SetPos(done);
        DialogExecuting::ExecutingDlg->SetText(
            CString(QStringLiteral("Exporting today's records (%1 %)").arg(done)));
        if (done >= 100) {
            DialogExecuting::Close();
            loop.quit();
        }
    });
    step.start(100);
    loop.exec();
    demoSay(done >= 100 ? QStringLiteral("export finished")
                        : QStringLiteral("export cancelled at %1 %").arg(done));
    return 0;
}

static DemoSection section(90, "Dialogs", run);
