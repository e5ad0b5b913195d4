// SPDX-License-Identifier: MIT
#include "DialogSetRDBInfo.h"
#include "ui_DialogSetRDBInfo.h"

#include "VantorStrings.h"
#include "WidgetTool.h"

const int DialogSetRDBInfo::RDBKindForm[4] = {0, 1, 3, 2};

DialogSetRDBInfo::DialogSetRDBInfo(QWidget *parent, SqlInfo *info)
    : QDialog(parent)
    , ui(new Ui::DialogSetRDBInfo)
    , m_pInfo(info)
    , m_bConstructed(false)
{
    ui->setupUi(this);
    WidgetTool::FixSizeAndHideHelp(this, false);
    // The port first: the kind box announces its first row as soon as it is filled.
    ui->spinBoxPort->setValue(info->nPort);
    for (int i = 0; i < 4; ++i)
        ui->comboBoxRDBKind->addItem(VantorStrings::RDBKind[i].text);
    int row = 0;
    for (int r = 0; r < 4; ++r)
        if (RDBKindForm[r] == info->nKind) {
            row = r;
            break;
        }
    if (info->nKind <= 3)
        ui->comboBoxRDBKind->setCurrentIndex(row);
    if (info->bRemote)
        ui->groupBoxRemote->setChecked(true);
    ui->lineEditIP->setText(info->strServer.text);
    ui->lineEditDBName->setText(info->strDBName.text);
    ui->lineEditID->setText(info->strUser.text);
    ui->lineEditPassword->setText(info->strPassword.text);
    m_bConstructed = true;
    if (!info->strUser.IsEmpty())
        ui->lineEditPassword->setFocus();
}

DialogSetRDBInfo::~DialogSetRDBInfo()
{
    delete ui;
}

void DialogSetRDBInfo::SetWindowStatus()
{
    ui->lineEditDBName->setEnabled(true);
    ui->groupBoxRemote->setEnabled(true);
    const int row = ui->comboBoxRDBKind->currentIndex();
    if (row < 0 || row > 3)
        return;
    switch (RDBKindForm[row]) {
    case 0:
    case 1:
    case 4:
        ui->lineEditDBName->setEnabled(false);
        break;
    case 2:
    case 3:
        ui->groupBoxRemote->setChecked(false);
        ui->groupBoxRemote->setEnabled(false);
        break;
    }
}

void DialogSetRDBInfo::on_comboBoxRDBKind_currentIndexChanged(int index)
{
    // While the dialog is built, a port the caller gave is kept.
    const bool keep = !m_bConstructed && m_pInfo->nPort != 0;
    if (!keep && index >= 0 && index <= 3) {
        switch (RDBKindForm[index]) {
        case 0:
            ui->spinBoxPort->setValue(1521);
            break;
        case 1:
            ui->spinBoxPort->setValue(3306);
            break;
        case 4:
            ui->spinBoxPort->setValue(5432);
            break;
        }
    }
    SetWindowStatus();
}

void DialogSetRDBInfo::on_pushButtonOk_clicked()
{
    const int row = ui->comboBoxRDBKind->currentIndex();
    m_pInfo->nKind = RDBKindForm[row < 0 || row > 3 ? 0 : row];
    m_pInfo->bRemote = ui->groupBoxRemote->isChecked() ? 1 : 0;
    m_pInfo->strServer = CString(ui->lineEditIP->text());
    m_pInfo->strDBName = CString(ui->lineEditDBName->text());
    m_pInfo->strUser = CString(ui->lineEditID->text());
    m_pInfo->strPassword = CString(ui->lineEditPassword->text());
    m_pInfo->nPort = ui->spinBoxPort->value();
    accept();
}

void DialogSetRDBInfo::on_pushButtonCancel_clicked()
{
    reject();
}

bool RDBInfoDlg(QWidget *parent, SqlInfo *info)
{
    DialogSetRDBInfo dialog(parent, info);
    return dialog.exec() == QDialog::Accepted;
}
