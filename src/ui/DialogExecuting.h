// SPDX-License-Identifier: MIT
#pragma once

#include "CString.h"
#include "vantor_export.h"

#include <QDialog>

namespace Ui {
class DialogExecuting;
}

/**
 * A small frameless waiting window: a message, a progress bar that appears once a range is set,
 * and a Cancel button.
 *
 * One instance at a time is shown through the static Execute() and Close(); ExecutingDlg points
 * to it while it is shown. Cancel (or Close()) rejects the window: its finished() signal clears
 * ExecutingDlg and the window deletes itself afterwards, so callers learn of a Cancel by watching
 * ExecutingDlg or the finished()/rejected() signals. The operation in progress is not stopped by
 * the window itself.
 *
 * The window lives in the user-interface thread. The three Signal* signals carry the values of
 * SetText, SetRange and SetPos for worker threads; the window connects nothing to them, so an
 * application connects them (queued) to the update operations itself.
 */
class VANTOR_EXPORT DialogExecuting : public QDialog
{
    Q_OBJECT

public:
    /**
     * Builds the window with `text` as its message and the progress bar hidden. The window
     * flags are always Qt::Window | Qt::FramelessWindowHint; `flags` is accepted and replaced.
     */
    explicit DialogExecuting(QWidget *parent = nullptr, CString text = CString(),
                             Qt::WindowFlags flags = Qt::WindowFlags());
    ~DialogExecuting() override;

    /**
     * Shows the one waiting window (non-modal; returns at once). When one is already shown it
     * is only activated and raised: its text is deliberately left as it was.
     */
    static void Execute(QWidget *parent = nullptr, CString text = CString(),
                        Qt::WindowFlags flags = Qt::WindowFlags());
    /// Rejects the shown waiting window, if there is one.
    static void Close();

    /// Replaces the message. Call from the user-interface thread; workers emit SignalSetText.
    void SetText(CString text);
    /// Shows the progress bar with the range 0 .. nMax.
    void SetRange(int nMax);
    /// Sets the bar's value; before SetRange the bar is still hidden.
    void SetPos(int nPos);
    /// Hides the Cancel button for an operation that cannot be interrupted.
    void HideCancel();

    /// The shown waiting window, or null when none is shown.
    static DialogExecuting *ExecutingDlg;

signals:
    /// Carry a new message, range or position from a worker thread; nothing is connected to
    /// them here (see the class comment).
    ///@{
    void SignalSetText(QString strText);
    void SignalSetRange(int nMax);
    void SignalSetPos(int nPos);
    ///@}

public slots:
    /// Rejects the window, as Close() does.
    void on_pushButtonCancel_clicked();
    /**
     * When this is the window that Execute() showed: clears ExecutingDlg and schedules the
     * window's deletion. A window the application constructed itself is left alone.
     */
    void on_DialogExecuting_finished(int result);

private:
    Ui::DialogExecuting *ui;
};
