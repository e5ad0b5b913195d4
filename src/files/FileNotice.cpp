// SPDX-License-Identifier: MIT
#include "FileNotice_p.h"

#include "PrintMessage.h"

#include <atomic>

namespace {

// Constant-initialised, so an installer that runs first during loading is not overwritten.
std::atomic<VantorPrivate::FileNoticeFunction> noticeFunction {nullptr};

} // namespace

namespace VantorPrivate {

void SetFileNoticeFunction(FileNoticeFunction function)
{
    noticeFunction = function;
}

void ShowFileNotice(char const *text)
{
    if (const FileNoticeFunction show = noticeFunction.load())
        show(text);
    else
        PrintMessage("%s\n", text);
}

} // namespace VantorPrivate
