#include "till/window/numberpad.h"

#include "till/window/named.h"

#include <QApplication>
#include <QGridLayout>
#include <QKeyEvent>
#include <QPushButton>

namespace till {

NumberPad::NumberPad(Keys keys, QWidget *parent)
    : QWidget(parent)
{
    auto *const grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setSpacing(6);
    for (int digit = 1; digit <= 9; ++digit)
        addKey(QString::number(digit), Qt::Key_0 + digit, 2 - (digit - 1) / 3, (digit - 1) % 3);
    addKey(QStringLiteral("0"), Qt::Key_0, 3, 0);
    addKey(QStringLiteral(","), Qt::Key_Comma, 3, 1);
    addKey(QStringLiteral("⌫"), Qt::Key_Backspace, 3, 2);
    if (keys == Keys::Goods) {
        addKey(QStringLiteral("*"), Qt::Key_Asterisk, 4, 0);
        addKey(QStringLiteral("Enter"), Qt::Key_Return, 4, 1, 2);
    }
}

void NumberPad::addKey(const QString &label, int key, int row, int column, int columns)
{
    auto *const button = named(new QPushButton(label, this), QStringLiteral("pad_") + label,
                               key == Qt::Key_Backspace ? tr("Delete the last character") : label);
    button->setFocusPolicy(Qt::NoFocus);
    button->setAutoDefault(false);
    button->setProperty("pad", true);
    button->setAutoRepeat(key == Qt::Key_Backspace);
    const auto text = label.size() == 1 && key != Qt::Key_Backspace ? label : QString();
    connect(button, &QPushButton::clicked, this, [key, text] {
        auto *const field = QApplication::focusWidget();
        if (!field)
            return;
        QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, text);
        QApplication::sendEvent(field, &press);
    });
    static_cast<QGridLayout *>(layout())->addWidget(button, row, column, 1, columns);
}

} // namespace till
