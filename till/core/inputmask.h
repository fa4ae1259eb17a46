#pragma once

#include <QList>
#include <QString>

#include <optional>

namespace till {

/// A pattern that typed text is brought into, in Qt's input-mask syntax.
///
/// "9" is a digit, "A" a letter, "N" a letter or digit, "X" any character but a blank, "H" a
/// hexadecimal and "B" a binary digit, "D" a digit from 1 to 9; "0", "a", "n", "x", "h", "b", "d"
/// are the same but may be missing, "#" may be a digit or a sign. ">" and "<" turn what follows
/// into capital and small letters, "!" ends that, "\" takes the next character literally. All else
/// stands for itself. Behind a ";" comes the character that shows an empty place.
class InputMask
{
public:
    explicit InputMask(const QString &mask);

    /// Whether the mask asks for nothing, so that every text fits.
    bool isEmpty() const { return places.isEmpty(); }
    /// The typed text in the mask's shape, its literals put in where they were not typed; nothing
    /// when it has too few or too many characters or wrong ones. Blanks, brackets and dashes that
    /// do not belong may be typed anywhere. A mask that begins with "+7" also takes a number that
    /// was typed with "8", as it is dialled inside the country. An empty text stays empty.
    std::optional<QString> apply(const QString &typed) const;
    /// The mask as shown before anything is typed, such as "+7(___)-___-__-__".
    QString outline() const;

private:
    struct Place
    {
        QChar symbol;
        QChar letterCase;                 ///< The mask's sign for it.
        bool (*accepts)(QChar) = nullptr; ///< Null for a literal.
        bool isRequired = false;
    };

    std::optional<QString> fit(QStringView typed, bool literalsTyped) const;

    QList<Place> places;
    QChar blank = u' ';
};

} // namespace till
