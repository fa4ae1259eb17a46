#include "till/core/inputmask.h"

#include <algorithm>
#include <array>
#include <utility>

namespace till {

namespace {

constexpr bool isDigit(QChar character)
{
    return character >= u'0' && character <= u'9';
}

/// A place of the mask by its two symbols, and what may be typed there.
struct PlaceKind
{
    QChar required;
    QChar optional;
    bool (*accepts)(QChar);
};

constexpr std::array placeKinds{
    PlaceKind{u'9', u'0', [](QChar typed) { return isDigit(typed); }},
    PlaceKind{u'D', u'd', [](QChar typed) { return isDigit(typed) && typed != u'0'; }},
    PlaceKind{u'B', u'b', [](QChar typed) { return typed == u'0' || typed == u'1'; }},
    PlaceKind{
        u'H', u'h',
        [](QChar typed) { return QStringView(u"0123456789abcdef").contains(typed.toLower()); }},
    PlaceKind{u'A', u'a', [](QChar typed) { return typed.isLetter(); }},
    PlaceKind{u'N', u'n', [](QChar typed) { return typed.isLetterOrNumber(); }},
    PlaceKind{u'X', u'x', [](QChar typed) { return !typed.isSpace(); }},
    PlaceKind{
        {}, u'#', [](QChar typed) { return isDigit(typed) || typed == u'+' || typed == u'-'; }},
};

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
    QChar letterCase;
    bool escaped = false;
    for (const auto symbol : QStringView(mask).left(delimiter < 0 ? mask.size() : delimiter)) {
        const auto *const kind =
            std::find_if(placeKinds.begin(), placeKinds.end(), [symbol](const PlaceKind &known) {
                return symbol == known.required || symbol == known.optional;
            });
        if (std::exchange(escaped, false))
            places.append({symbol});
        else if (symbol == u'\\')
            escaped = true;
        else if (symbol == u'>' || symbol == u'<' || symbol == u'!')
            letterCase = symbol;
        else if (kind == placeKinds.end())
            places.append({symbol});
        else
            places.append({symbol, letterCase, kind->accepts, symbol == kind->required});
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
        shown.append(place.accepts ? blank : place.symbol);
    return shown;
}

std::optional<QString> InputMask::fit(QStringView typed, bool literalsTyped) const
{
    QString result;
    for (const auto &place : places) {
        if (!place.accepts) {
            if (literalsTyped)
                typed = withoutLiteral(typed, place.symbol);
            result.append(place.symbol);
            continue;
        }
        while (!typed.isEmpty() && !place.accepts(typed.front()) &&
               !typed.front().isLetterOrNumber())
            typed = typed.sliced(1);
        if (!typed.isEmpty() && place.accepts(typed.front())) {
            const auto character = typed.front();
            result.append(place.letterCase == u'>'   ? character.toUpper()
                          : place.letterCase == u'<' ? character.toLower()
                                                     : character);
            typed = typed.sliced(1);
        } else if (place.isRequired) {
            return std::nullopt;
        }
    }
    return withoutSeparators(typed).isEmpty() ? std::optional(result) : std::nullopt;
}

} // namespace till
