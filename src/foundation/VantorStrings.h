// SPDX-License-Identifier: MIT
#pragma once

/**
 * @file VantorStrings.h
 * Module-wide services: the application name, the library's fixed strings, the language tests
 * and the two event-pumping sleeps.
 *
 * All of this is static state of the library, constructed when it is loaded: the application
 * name starts as "Designer", VantorStrings::RDBKind holds the five database-kind names, and the
 * other fixed strings stay empty until VantorStrings::Init() is called.
 */

#include "CString.h"
#include "vantor_export.h"

#include <QObject>
#include <QString>

/**
 * The library's fixed strings. Its texts are translated in the context "VantorStrings", so an
 * application's translation catalogue can supply them; all members are static.
 *
 * Call Init() after the application has installed its translator: the translated values are
 * taken at that moment. Translating "English" into "Korean" or "Chinese" is how an application
 * selects its language for GetLanguage() and IsKorean().
 */
class VANTOR_EXPORT VantorStrings : public QObject
{
    Q_OBJECT
public:
    /// Holds no state: an instance exists only to carry the translation context.
    explicit VantorStrings(QObject *parent = nullptr);

    /**
     * Fills Language (translated "English"), InitFontName (translated "Arial"), PlumeVersion
     * ("3.3.3 beta3", never translated) and Wexor (translated "Wexor Co., Ltd").
     */
    static void Init();

    /// Names of the database kinds, by kind number 0-4: "Oracle", "MariaDB", "MS SQL(ODBC)",
    /// "ODBC", "PostgreSQL". Set when the library is loaded.
    static CString RDBKind[5];
    /// The translated word "English"; empty before Init().
    static CString Language;
    /// The translated default font name "Arial"; empty before Init().
    static CString InitFontName;
    /// The version text "3.3.3 beta3"; empty before Init().
    static CString PlumeVersion;
    /// The translated maker line "Wexor Co., Ltd"; empty before Init().
    static CString Wexor;
};

/**
 * Sets the application name from `name` read as UTF-8; a null pointer gives an empty name.
 * Only the library's own name changes: QCoreApplication's names, the organisation, the
 * language and display scaling are left alone.
 */
VANTOR_EXPORT void SetAppName(char const *name);

/// The application name set by SetAppName ("Designer" until then). Message boxes use it as
/// their window title.
VANTOR_EXPORT QString GetAppName();

/// True when VantorStrings::Language is exactly "Korean" (case-sensitive).
VANTOR_EXPORT bool IsKorean();

/**
 * The language selected through VantorStrings::Language: 0 for "English", 2 for "Chinese",
 * and 1 (Korean) for anything else, including an empty Language before VantorStrings::Init()
 * and other spellings such as "english". Comparisons are case-sensitive.
 */
VANTOR_EXPORT int GetLanguage();

/// Blocks the calling thread for `milliseconds` without processing any events.
VANTOR_EXPORT void Sleep(int milliseconds);

/// Processes the calling thread's pending events once (QCoreApplication::processEvents).
VANTOR_EXPORT void PeekAndExeMessage();

/**
 * Keeps the user interface alive while waiting about `milliseconds`: processes pending events
 * and then sleeps 50 ms, milliseconds / 50 times (integer division). A wait below 50 ms still
 * processes events once and sleeps 50 ms; the remainder above a multiple of 50 is dropped, so
 * 149 gives two rounds (100 ms), not three.
 */
VANTOR_EXPORT void PeekAndSleep(int milliseconds);
