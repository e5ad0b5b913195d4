// SPDX-License-Identifier: MIT
#pragma once

#include "vantor_export.h"

class QPushButton;
class QWidget;

/// Static helpers that size, place and show top-level widgets.
class VANTOR_EXPORT WidgetTool
{
public:
    /**
     * Not resizable: fixes `w` to its current size, removes the context-help button from its
     * title bar and centres it on the primary screen. Resizable: ExecuteResizableDlg(nullptr, w).
     */
    static void FixSizeAndHideHelp(QWidget *w, bool resizable);
    /**
     * When `w` fits on the primary screen, the same as FixSizeAndHideHelp(w, false). Otherwise
     * `w` is put into a scrollable DialogEx wrapper (child of `parent`, sized to the screen less
     * 24 pixels of title bar, with `w`'s title and flags) which is shown at once. Closing the
     * wrapper closes and deletes `w`, and the wrapper deletes itself.
     */
    static void ExecuteResizableDlg(QWidget *parent, QWidget *w);
    /// Centres `w` in the primary screen's available geometry.
    static void CenterWidget(QWidget *w);
    /// Fixes `w` to its current size, or frees it (minimum 0 x 0, maximum 16777215 x 16777215).
    static void SetFixedSize(QWidget *w, bool fixed);
    /// Makes the button flat and fills it with the COLORREF `color` (0x00BBGGRR).
    static void SetButtonColor(QPushButton *b, unsigned long color);
    /**
     * Shows `w` normal, raises and activates it, then sets its flags to (flags AND
     * stays-on-top), then to (flags AND NOT stays-on-top), then shows it again. The first step
     * keeps only the stays-on-top bit; the sequence is kept as it is on purpose, since
     * applications rely on the window it produces.
     */
    static void ExecuteShow(QWidget *w);
    /**
     * Turns on Qt's high-DPI scaling (and, on Windows, declares the process DPI-aware).
     * Call it before the application object is created.
     */
    static void EnableHighDpiScaling();
};
