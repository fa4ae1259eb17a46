#include "till/core/inputmask.h"

#include <algorithm>
#include <utility>

namespace till {

namespace {

constexpr QStringView placeSymbols = u"9ANXHBD0anxhbd#";
constexpr QStringView requiredSymbols = u"9ANXHBD";

bool isDigit(QChar character)
{
    return character >= u'0' && character <= u'9';
}

/// The text from its first letter or digit on.
QStringView withoutSeparators(QStringView text)
{
    while (!text.isEmpty() && !text.front().isLetterOrNumber())
        text = text.sliced(1);
    return text;
}

/// Takes from the front of `typed` what was typed for a literal of the mask.
QStringView withoutLiteral(QStringView typed, QChar literal)
{
    const auto rest = literal.isLetterOrNumber() ? withoutSeparators(typed) : typed;
    return !rest.isEmpty() && rest.front() == literal ? rest.sliced(1) : typed;
}

} // namespace

InputMask::InputMask(const QString &mask)
{
    const auto delimiter = mask.indexOf(u';');
    if (delimiter >= 0 && delimiter + 1 < mask.size())
        blank = mask.at(delimiter + 1);
    auto letterCase = LetterCase::Kept;
    bool escaped = false;
    for (const auto symbol : QStringView(mask).left(delimiter < 0 ? mask.size() : delimiter)) {
        if (std::exchange(escaped, false))
            places.append({symbol, true, letterCase});
        else if (symbol == u'\\')
            escaped = true;
        else if (symbol == u'>')
            letterCase = LetterCase::Upper;
        else if (symbol == u'<')
            letterCase = LetterCase::Lower;
        else if (symbol == u'!')
            letterCase = LetterCase::Kept;
        else
            places.append({symbol, !placeSymbols.contains(symbol), letterCase});
    }
}

std::optional<QString> InputMask::apply(const QString &typed) const
{
    const auto text = QStringView(typed).trimmed();
    if (isEmpty() || text.isEmpty())
        return text.toString();
    if (auto fitted = fit(text, true))
        return fitted;
    // Digits alone may be all places without the literals, even where one looks like a literal.
    if (withoutSeparators(text) == text) {
        if (auto fitted = fit(text, false))
            return fitted;
    }
    const auto number = withoutSeparators(text);
    if (outline().startsWith(QLatin1String("+7")) && number.startsWith(u'8'))
        return fit(number.sliced(1), false);
    return std::nullopt;
}

QString InputMask::outline() const
{
    QString shown;
    for (const auto &place : places)
        shown.append(place.literal ? place.symbol : blank);
    return shown;
}

bool InputMask::accepts(const Place &place, QChar character)
{
    const auto lower = character.toLower();
    switch (place.symbol.unicode()) {
    case u'9':
    case u'0':
        return isDigit(character);
    case u'D':
    case u'd':
        return isDigit(character) && character != u'0';
    case u'#':
        return isDigit(character) || character == u'+' || character == u'-';
    case u'A':
    case u'a':
        return character.isLetter();
    case u'N':
    case u'n':
        return character.isLetterOrNumber();
    case u'X':
    case u'x':
        return !character.isSpace();
    case u'H':
    case u'h':
        return isDigit(character) || (lower >= u'a' && lower <= u'f');
    default: // 'B' and 'b'
        return character == u'0' || character == u'1';
    }
}

std::optional<QString> InputMask::fit(QStringView typed, bool literalsTyped) const
{
    QString result;
    for (const auto &place : places) {
        if (place.literal) {
            if (literalsTyped)
                typed = withoutLiteral(typed, place.symbol);
            result.append(place.symbol);
            continue;
        }
        while (!typed.isEmpty() && !accepts(place, typed.front()) &&
               !typed.front().isLetterOrNumber())
            typed = typed.sliced(1);
        if (!typed.isEmpty() && accepts(place, typed.front())) {
            const auto character = typed.front();
            result.append(place.letterCase == LetterCase::Upper   ? character.toUpper()
                          : place.letterCase == LetterCase::Lower ? character.toLower()
                                                                  : character);
            typed = typed.sliced(1);
        } else if (requiredSymbols.contains(place.symbol)) {
            return std::nullopt;
        }
    }
    return withoutSeparators(typed).isEmpty() ? std::optional(result) : std::nullopt;
}

} // namespace till
