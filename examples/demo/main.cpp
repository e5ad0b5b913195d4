// SPDX-License-Identifier: MIT
// vantor-demo: a tour of the library, one section a subsystem. It needs no display unless
// started with --gui.
#include "Demo.h"

#include <Vantor.h>

#include <QApplication>
#include <QCommandLineParser>
#include <QTemporaryDir>
#include <QTextStream>

#include <algorithm>
#include <vector>

namespace {
struct Entry
{
    int order;
    const char *title;
    DemoFunction run;
};

std::vector<Entry> &registry()
{
    static std::vector<Entry> entries;
    return entries;
}
} // namespace

DemoSection::DemoSection(int order, const char *title, DemoFunction run)
{
    registry().push_back({order, title, run});
}

void demoSay(const QString &line)
{
    QTextStream(stdout) << line << '\n';
}

int main(int argc, char **argv)
{
    // Headless unless asked for the dialogs: the tour runs on machines without a display.
    bool wantGui = false;
    for (int i = 1; i < argc; ++i)
        wantGui = wantGui || qstrcmp(argv[i], "--gui") == 0;
    if (!wantGui && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("A tour of the Vantor library"));
    parser.addHelpOption();
    QCommandLineOption gui(QStringLiteral("gui"),
                           QStringLiteral("Show the dialogs (needs a display)."));
    QCommandLineOption out(QStringLiteral("out"),
                           QStringLiteral("Folder for the files the tour writes."),
                           QStringLiteral("dir"));
    parser.addOption(gui);
    parser.addOption(out);
    parser.process(app);

    QTemporaryDir scratch;
    DemoContext ctx;
    ctx.args = app.arguments();
    ctx.gui = parser.isSet(gui);
    ctx.outputDir = parser.isSet(out) ? parser.value(out) : scratch.path();

    auto entries = registry();
    std::stable_sort(entries.begin(), entries.end(),
                     [](const Entry &a, const Entry &b) { return a.order < b.order; });
    int failures = 0;
    for (const Entry &e : entries) {
        demoSay(QStringLiteral("== %1").arg(QString::fromUtf8(e.title)));
        if (e.run(ctx) != 0) {
            demoSay(QStringLiteral("   (section failed)"));
            ++failures;
        }
    }
    demoSay(QStringLiteral("== %1 sections, %2 failed").arg(entries.size()).arg(failures));
    return failures == 0 ? 0 : 1;
}
