// SPDX-License-Identifier: MIT
#pragma once

#include "vantor_export.h"

#include <QDialog>

namespace Ui {
class MessageBoxDlg;
}

/**
 * The large-type message dialog with one OK button: white bold text on black, 691 x 191
 * pixels, centred on the screen. The message goes into the word-wrapped label "labelMessage".
 */
class VANTOR_EXPORT MessageBoxDlg : public QDialog
{
    Q_OBJECT

public:
    /// Builds the dialog with an empty message; run it with exec().
    explicit MessageBoxDlg(QWidget *parent = nullptr);
    ~MessageBoxDlg() override;

    /// Puts `text` into labelMessage.
    void SetMessage(const QString &text);

public slots:
    /// Accepts the dialog.
    void on_pushButtonOK_clicked();

private:
    Ui::MessageBoxDlg *ui;
};
