// SPDX-License-Identifier: MIT
#pragma once

#include "vantor_export.h"

#include <QByteArray>
#include <QPlainTextEdit>

/**
 * A terminal-style view: green text on black that grows only at the end, keys sent out as
 * bytes through getData(), and the keyboard pause of the library's message output.
 *
 * The document keeps the last 100000 lines. Mouse clicks only give the view the keyboard focus:
 * they never move the insertion point or select, there is no context menu, so received text
 * always continues where the last text ended.
 *
 * Keys: Backspace and the arrow keys do nothing. C, with or without a modifier, copies the
 * whole text to the clipboard (a plain C too, deliberately: the view takes no typed C).
 * Control+S pauses the library's message output (ExternPrintMessageFlag = 0); a plain S does
 * nothing. Any other key resumes it (ExternPrintMessageFlag = 1), is shown when local echo is
 * on, and is sent as its text in the local 8-bit encoding (empty for keys without text).
 */
class VANTOR_EXPORT Console : public QPlainTextEdit
{
    Q_OBJECT

public:
    /// Green text on black, keeping at most the last 100000 lines; local echo off.
    explicit Console(QWidget *parent = nullptr);

    /// Appends the bytes up to the first zero byte, read as Latin-1, at the insertion point and
    /// scrolls to the bottom. An empty array does nothing.
    void putData(const QByteArray &data);
    /// Off after construction: typed keys are sent but not shown.
    void setLocalEchoEnabled(bool set);

signals:
    /// The bytes of a typed key, for the connected line.
    void getData(const QByteArray &data);

public slots:
    /// Copies the whole text to the clipboard and leaves the cursor at the end, unselected.
    void OnCopy();

protected:
    /// Handles the keys as the class comment says: copy, pause, resume and send.
    void keyPressEvent(QKeyEvent *e) override;
    /// Gives the keyboard focus only.
    void mousePressEvent(QMouseEvent *e) override;
    /// Does nothing: no word selection.
    void mouseDoubleClickEvent(QMouseEvent *e) override;
    /// Does nothing: no context menu.
    void contextMenuEvent(QContextMenuEvent *e) override;

private:
    bool m_bLocalEchoEnabled = false;
};
