#pragma once

#include <QStackedWidget>

class QPushButton;

namespace till {

/// Keys for a touch screen. Each sends a keyboard's key to the field with the focus, which keeps
/// the focus.
class NumberPad : public QStackedWidget
{
    Q_OBJECT
public:
    enum class Keys {
        Numbers, ///< Digits, the decimal comma, backspace.
        Goods,   ///< Also "*" for a quantity, and Enter.
        Letters, ///< Russian and Latin letters, digits, and an address's signs.
    };

    explicit NumberPad(Keys keys, QWidget *parent = nullptr);

private:
    void addPage(const QStringList &rows);
    QPushButton *makeKey(QChar symbol);
    void press(QChar symbol);
    void setCapital(bool on);

    bool isCapital = false;
};

} // namespace till
