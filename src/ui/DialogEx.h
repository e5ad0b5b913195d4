// SPDX-License-Identifier: MIT
#pragma once

#include "vantor_export.h"

#include <QDialog>
#include <QPointer>

class QCloseEvent;
class QKeyEvent;

/**
 * A QDialog base for the library's dialogs. It refuses the Escape key (while
 * m_bBlockEscape is true, as it is after construction) and owns one attached child window,
 * which it closes and deletes when it is closed itself.
 */
class VANTOR_EXPORT DialogEx : public QDialog
{
    Q_OBJECT

public:
    /// Remembers `parent` in m_pParent and blocks Escape; no child window is attached yet.
    explicit DialogEx(QWidget *parent = nullptr);
    /// Deletes the attached child window, if any is still attached.
    ~DialogEx() override;

    /// The parent widget given at construction.
    QWidget *m_pParent;
    /// While true, Escape neither closes nor rejects the dialog. True after construction.
    bool m_bBlockEscape;
    /**
     * The attached child window, owned by this dialog: closed and deleted when the dialog is
     * closed or destroyed. Null after construction; set it to attach a window. It becomes null
     * by itself if the window is deleted elsewhere.
     */
    QPointer<QWidget> m_pChildWindow;

protected:
    /// Closes, deletes and detaches the attached child window, then closes as a QDialog does.
    void closeEvent(QCloseEvent *event) override;
    /// Escape is ignored while m_bBlockEscape is true; every other key goes to QDialog.
    void keyPressEvent(QKeyEvent *event) override;
    /// Escape is ignored while m_bBlockEscape is true; every other key goes to the base class.
    void keyReleaseEvent(QKeyEvent *event) override;
};
