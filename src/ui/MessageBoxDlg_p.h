// SPDX-License-Identifier: MIT
#pragma once

#include <initializer_list>

class QDialog;
class QLabel;
class QPushButton;

// The common dress of the large-type message dialogs: fixed size without help button, black
// background, white message, a font family list that still reads well where "Ubuntu" is
// missing, and the dialog centred on the screen.
void vantorDressBoxDialog(QDialog *dialog, QLabel *message,
                          std::initializer_list<QPushButton *> buttons);
