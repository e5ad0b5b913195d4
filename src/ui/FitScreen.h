// SPDX-License-Identifier: MIT
#pragma once

#include "vantor_export.h"

#include <QString>

class QLabel;
class QPixmap;
class QWidget;

/**
 * Static helpers that place widgets on the screen and scale layouts designed for an
 * 800-pixel-wide screen to the actual one (factor screen width / 800 in both directions).
 *
 * The primary screen's size is cached in m_nScreenWidth and m_nScreenHeight by the first
 * operation that finds both still 0, and deliberately never refreshed: a later change of
 * resolution is not noticed.
 */
class VANTOR_EXPORT FitScreen
{
public:
    /// The cached screen size in pixels; 0 x 0 until the first operation fills it.
    ///@{
    static int m_nScreenWidth;
    static int m_nScreenHeight;
    ///@}

    /// Fills the cached screen size if it is still 0 x 0.
    static void Init();
    /**
     * Scales `w`'s position and size by SW / 800, each truncated toward zero, where SW is
     * `width` or, when 0, the cached screen width (SH likewise with `height`). A widget that
     * then runs past the right or bottom edge is moved to end 10 pixels inside it.
     */
    static void ModifyPos(QWidget *w, int width = 0, int height = 0);
    /// Scales the label's point size by screen width / 800 in integer arithmetic (truncating).
    static void ModifyFontSize(QLabel *label);
    /// Moves `w` to (0, 0) and sizes it to the cached screen size.
    static void FullScreen(QWidget *w);
    /// Centres `w` on the cached screen size, never left of or above (0, 0); size unchanged.
    static void CenterWindow(QWidget *w);
    /// Moves `w` to (x, y) and sizes it to cx x cy pixels, unscaled; fills the cached size first.
    static void MoveWindow(QWidget *w, int x, int y, int cx, int cy);
    /**
     * On: adds stays-on-top and frameless to the window flags. Off: toggles both with XOR, so
     * switching off a window that was not on top turns them on; kept so on purpose. Then shows
     * the window.
     */
    static void Topmost(QWidget *w, bool on);
    /**
     * Sets the pixmap on the label, scaled smoothly to the label's size keeping its aspect
     * ratio. A null pixmap leaves the label unchanged.
     */
    static void SetScaledImage(QLabel *label, QPixmap *pixmap);
    /// The same with the image in `file`; the label is left unchanged if it cannot be read.
    static void SetScaledImage(QLabel *label, QString file);
};
