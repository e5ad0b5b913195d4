// SPDX-License-Identifier: MIT
#include "AskBoxDlg.h"
#include "MessageBoxDlg_p.h"
#include "ui_AskBoxDlg.h"

AskBoxDlg::AskBoxDlg(QWidget *parent)
    : QDialog(parent)
    , ui(new Ui::AskBoxDlg)
{
    ui->setupUi(this);
    vantorDressBoxDialog(this, ui->labelMessage, {ui->pushButtonOK, ui->pushButtonCancel});
}

AskBoxDlg::~AskBoxDlg()
{
    delete ui;
}

void AskBoxDlg::SetMessage(const QString &text)
{
    ui->labelMessage->setText(text);
}

void AskBoxDlg::on_pushButtonOK_clicked()
{
    accept();
}

void AskBoxDlg::on_pushButtonCancel_clicked()
{
    reject();
}
