// SPDX-License-Identifier: MIT
#pragma once

#include "vantor_export.h"

#include <QDialog>

namespace Ui {
class AskBoxDlg;
}

/**
 * The large-type question dialog with OK and Cancel: white bold text on black, 691 x 191
 * pixels, centred on the screen. The question goes into the word-wrapped label "labelMessage".
 * The OK button takes focus only by click.
 */
class VANTOR_EXPORT AskBoxDlg : public QDialog
{
    Q_OBJECT

public:
    /// Builds the dialog with an empty message; run it with exec().
    explicit AskBoxDlg(QWidget *parent = nullptr);
    ~AskBoxDlg() override;

    /// Puts `text` into labelMessage.
    void SetMessage(const QString &text);

public slots:
    /// Accepts the dialog.
    void on_pushButtonOK_clicked();
    /// Rejects the dialog.
    void on_pushButtonCancel_clicked();

private:
    Ui::AskBoxDlg *ui;
};
