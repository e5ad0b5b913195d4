// SPDX-License-Identifier: MIT
#pragma once

#include "CString.h"
#include "vantor_export.h"

/**
 * Finds the installed Microsoft Excel program and its start-up add-in folder by looking through
 * the Microsoft Office installation folders, without the registry.
 *
 * The folders searched are "C:/Program Files/Microsoft Office", then
 * "C:/Program Files (x86)/Microsoft Office". On Linux these are relative paths, taken from the
 * current directory, and on a normal system they do not exist: both operations then return an
 * empty text. Where such a tree exists below the current directory (a folder "C:" holding
 * "Program Files/Microsoft Office/..."), the search works the same as on Windows.
 */
class VANTOR_EXPORT Excel
{
public:
    /// The path of EXCEL.EXE in the first Office folder that holds one, or an empty text.
    static CString FindExcelPathFile();
    /**
     * Looks for "<folder>/<sub>/EXCEL.EXE" in each subfolder in name order, and with `recurse`
     * also for "<folder>/<sub>/<sub2>/EXCEL.EXE" right after each subfolder: never deeper than
     * two levels. Subfolders named "Updates" (exactly) are skipped. The folder is given as
     * Latin-1 text.
     */
    static CString FindExcelPathFile(CString folder, bool recurse);
    /// The program's folder followed by "/XLSTART/", or an empty text without a program.
    static CString FindXlaPath();
};
