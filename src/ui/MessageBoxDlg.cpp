// SPDX-License-Identifier: MIT
#include "MessageBoxDlg.h"
#include "MessageBoxDlg_p.h"
#include "ui_MessageBoxDlg.h"

#include "FitScreen.h"
#include "WidgetTool.h"

void vantorDressBoxDialog(QDialog *dialog, QLabel *message,
                          std::initializer_list<QPushButton *> buttons)
{
    WidgetTool::FixSizeAndHideHelp(dialog, false);

    dialog->setAutoFillBackground(true);
    QPalette background = dialog->palette();
    background.setColor(QPalette::Window, QColor(0, 0, 0));
    dialog->setPalette(background);

    QPalette text = message->palette();
    text.setColor(QPalette::WindowText, QColor(255, 255, 255));
    message->setPalette(text);

    // Keep the form's family first and fall back to families of the same build and width.
    const QStringList families {QStringLiteral("Ubuntu"),      QStringLiteral("Noto Sans"),
                                QStringLiteral("DejaVu Sans"), QStringLiteral("Liberation Sans"),
                                QStringLiteral("Arial"),       QStringLiteral("Sans Serif")};
    QList<QWidget *> texts {message};
    for (QPushButton *b : buttons)
        texts.append(b);
    for (QWidget *w : qAsConst(texts)) {
        QFont font = w->font();
        font.setFamilies(families);
        w->setFont(font);
    }

    FitScreen::CenterWindow(dialog);
}

MessageBoxDlg::MessageBoxDlg(QWidget *parent)
    : QDialog(parent)
    , ui(new Ui::MessageBoxDlg)
{
    ui->setupUi(this);
    vantorDressBoxDialog(this, ui->labelMessage, {ui->pushButtonOK});
}

MessageBoxDlg::~MessageBoxDlg()
{
    delete ui;
}

void MessageBoxDlg::SetMessage(const QString &text)
{
    ui->labelMessage->setText(text);
}

void MessageBoxDlg::on_pushButtonOK_clicked()
{
    accept();
}
