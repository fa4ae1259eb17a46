#pragma once

#include <QString>

#include <optional>

namespace till {

/// A pattern for typed text, in Qt's input-mask syntax as far as tills need it.
///
/// "9" is a digit, "A" a letter, "N" a letter or digit; "0", "a", "n" are their optional forms.
/// Every other character is a literal. The character after a ";" shows an empty place.
class InputMask
{
public:
    explicit InputMask(const QString &mask)
        : shape(mask.section(u';', 0, 0))
        , blank(mask.section(u';', 1).append(u' ').front())
    {}

    /// Whether the mask has no places, so that every text fits.
    bool isEmpty() const { return shape.isEmpty(); }
    /// The typed text in the mask's shape, with missing literals added; nothing when characters are
    /// wrong, missing or too many. Only letters and digits count. A mask that begins with "+7" also
    /// takes a number typed with "8", the prefix dialled inside the country. An empty text stays
    /// empty.
    std::optional<QString> apply(const QString &typed) const;
    /// The mask before anything is typed, such as "+7(___)-___-__-__".
    QString outline() const;

private:
    QString shape;
    QChar blank;
};

} // namespace till
