// SPDX-License-Identifier: MIT
#include "DialogExecuting.h"
#include "ui_DialogExecuting.h"

#include "WidgetTool.h"

DialogExecuting *DialogExecuting::ExecutingDlg = nullptr;

DialogExecuting::DialogExecuting(QWidget *parent, CString text, Qt::WindowFlags flags)
    : QDialog(parent, flags)
    , ui(new Ui::DialogExecuting)
{
    ui->setupUi(this);
    WidgetTool::FixSizeAndHideHelp(this, false);
    ui->labelText->setText(text.text);
    ui->progressBar->hide();
    setWindowFlags(Qt::Window | Qt::FramelessWindowHint);
}

DialogExecuting::~DialogExecuting()
{
    // A window deleted while shown (for example with its parent) must not stay registered.
    if (ExecutingDlg == this)
        ExecutingDlg = nullptr;
    delete ui;
}

void DialogExecuting::Execute(QWidget *parent, CString text, Qt::WindowFlags flags)
{
    if (!ExecutingDlg)
        ExecutingDlg = new DialogExecuting(parent, text, flags);
    else {
        ExecutingDlg->activateWindow();
        ExecutingDlg->raise();
    }
    ExecutingDlg->show();
}

void DialogExecuting::Close()
{
    if (ExecutingDlg)
        ExecutingDlg->reject();
}

void DialogExecuting::SetText(CString text)
{
    ui->labelText->setText(text.text);
}

void DialogExecuting::SetRange(int nMax)
{
    ui->progressBar->show();
    ui->progressBar->setRange(0, nMax);
}

void DialogExecuting::SetPos(int nPos)
{
    ui->progressBar->setValue(nPos);
}

void DialogExecuting::HideCancel()
{
    ui->pushButtonCancel->hide();
}

void DialogExecuting::on_pushButtonCancel_clicked()
{
    reject();
}

void DialogExecuting::on_DialogExecuting_finished(int result)
{
    Q_UNUSED(result);
    // Only the window that Execute() made is owned here; one that the application constructed
    // itself (perhaps on its stack) is left to the application.
    if (ExecutingDlg == this) {
        ExecutingDlg = nullptr;
        deleteLater();
    }
}
