// SPDX-License-Identifier: MIT
// Runs one message-log scenario in a process of its own, so that the test reads exactly what
// reaches standard output, and what the library writes to the log file as it is unloaded.
#include "PrintMessage.h"

#include <cstdio>
#include <string>

static std::string received;
static void collect(CString text)
{
    received += text.GetData();
}

int main(int argc, char **argv)
{
    const std::string scenario = argc > 1 ? argv[1] : "";
    if (scenario == "count") {
        PrintMessage("%d items\n", 3);
    } else if (scenario == "long") {
        PrintMessage("%s|", std::string(5000, 'x').c_str());
    } else if (scenario == "callback") {
        SetPrintMessageFunction(collect);
        PrintMessage("to callback %d\n", 1);
        std::printf("got: %s", received.c_str());
    } else if (argc > 2 && (scenario == "unload" || scenario == "overflow")) {
        // The writer starts before the messages, or after the ring has overflowed; main returns
        // at once and the library writes the queue out as it is unloaded.
        ExternPrintMessageFlag = 0;
        SetLogFile(argv[2], 0);
        const bool early = scenario == "unload";
        if (early)
            StartPrintMessageThread();
        for (int i = 1; i <= (early ? 5000 : 12000); ++i)
            PrintMessage("message %05d\n", i);
        StartPrintMessageThread();
    } else {
        return 2;
    }
    return 0;
}
