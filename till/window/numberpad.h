#pragma once

#include <QWidget>

namespace till {

/// Keys for a touch screen. Each acts as the key of a keyboard on the field that has the focus,
/// which keeps it.
class NumberPad : public QWidget
{
    Q_OBJECT
public:
    enum class Keys {
        Numbers, ///< Digits, the decimal comma, backspace.
        Goods,   ///< With them "*" for a quantity, and Enter.
    };

    explicit NumberPad(Keys keys, QWidget *parent = nullptr);

private:
    void addKey(const QString &label, int key, int row, int column, int columns = 1);
};

} // namespace till
