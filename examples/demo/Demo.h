// SPDX-License-Identifier: MIT
#pragma once

// A section of the example tour. Each demo_<topic>.cpp registers one with a static
// DemoSection object; main() runs the sections in the order of their `order` numbers.
#include <QStringList>

struct DemoContext
{
    QStringList args;  ///< the command line
    bool gui = false;  ///< --gui: a display is present and dialogs may be shown
    QString outputDir; ///< where sections write files (a temporary folder unless --out is given)
};

using DemoFunction = int (*)(DemoContext &);

struct DemoSection
{
    DemoSection(int order, const char *title, DemoFunction run);
};

/// Prints a line of the tour on standard output.
void demoSay(const QString &line);
