#include "till/window/numberpad.h"

#include "till/window/named.h"

#include <QApplication>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLocale>
#include <QPushButton>

namespace till {

namespace {

using namespace Qt::StringLiterals;

constexpr QChar backspace = u'⌫';
constexpr QChar enter = u'⏎';
constexpr QChar shift = u'⇧';
constexpr QChar otherLetters = u'⇄';

} // namespace

NumberPad::NumberPad(Keys keys, QWidget *parent)
    : QStackedWidget(parent)
{
    QStringList digits{u"789"_s, u"456"_s, u"123"_s, u"0,⌫"_s};
    if (keys == Keys::Goods)
        digits.append(u"*⏎⏎"_s);
    if (keys != Keys::Letters) {
        addPage(digits);
        return;
    }
    setObjectName(u"letters"_s);
    const auto row = u"⇧⇧⇄⇄     -."_s;
    addPage({u"1234567890⌫"_s, u"йцукенгшщзх"_s, u"фывапролджэ"_s, u"ячсмитьбюёъ"_s, row});
    addPage({u"1234567890⌫"_s, u"qwertyuiop_"_s, u"asdfghjkl@@"_s, u"zxcvbnm...."_s, row});
    setCurrentIndex(QLocale().language() == QLocale::Russian ? 0 : 1);
    setCapital(true); // a name begins with a capital
}

/// Adds a page of keys, a symbol each; a repeated symbol is a wide key.
void NumberPad::addPage(const QStringList &rows)
{
    auto *const page = new QWidget(this);
    auto *const grid = new QGridLayout(page);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setSpacing(5);
    for (int row = 0; row < rows.size(); ++row) {
        const auto &symbols = rows.at(row);
        for (int column = 0, end = 0; column < symbols.size(); column = end) {
            while (end < symbols.size() && symbols.at(end) == symbols.at(column))
                ++end;
            grid->addWidget(makeKey(symbols.at(column)), row, column, 1, end - column);
        }
    }
    addWidget(page);
}

QPushButton *NumberPad::makeKey(QChar symbol)
{
    const QString text = symbol == enter ? u"Enter"_s : symbol;
    const QHash<QChar, QString> spoken{{backspace, tr("Delete the last character")},
                                       {shift, tr("Capital letters")},
                                       {otherLetters, tr("Other letters")},
                                       {u' ', tr("Space")}};
    auto *const key = named(new QPushButton(text), u"pad_"_s + text, spoken.value(symbol, text));
    key->setFocusPolicy(Qt::NoFocus);
    key->setAutoDefault(false);
    key->setProperty("pad", true);
    key->setAutoRepeat(symbol == backspace);
    connect(key, &QPushButton::clicked, this, [this, symbol] { press(symbol); });
    return key;
}

void NumberPad::press(QChar symbol)
{
    if (symbol == shift) {
        setCapital(!isCapital);
        return;
    }
    if (symbol == otherLetters) {
        setCurrentIndex(1 - currentIndex());
        return;
    }
    const QHash<QChar, Qt::Key> keys{{backspace, Qt::Key_Backspace}, {enter, Qt::Key_Return}};
    const QString text = isCapital ? symbol.toUpper() : symbol;
    QKeyEvent event(QEvent::KeyPress, keys.value(symbol, Qt::Key_unknown), Qt::NoModifier,
                    keys.contains(symbol) ? QString() : text);
    if (auto *const field = QApplication::focusWidget())
        QApplication::sendEvent(field, &event);
    setCapital(symbol == u' '); // every word of a name begins with a capital
}

void NumberPad::setCapital(bool on)
{
    isCapital = on;
    for (auto *const key : findChildren<QPushButton *>()) {
        if (key->text().size() == 1)
            key->setText(on ? key->text().toUpper() : key->text().toLower());
    }
}

} // namespace till
