#include "till/core/inputmask.h"

#include <QHash>

#include <utility>

namespace till {

namespace {

using Accepts = bool (*)(QChar);

bool isDigit(QChar character)
{
    return character >= u'0' && character <= u'9';
}

/// What may be typed at a place of that symbol; null for a symbol that stands for itself.
Accepts acceptsOf(QChar symbol)
{
    static const QHash<QChar, Accepts> places{
        {u'9', isDigit},
        {u'0', isDigit},
        {u'#', [](QChar typed) { return isDigit(typed) || typed == u'+' || typed == u'-'; }},
        {u'D', [](QChar typed) { return isDigit(typed) && typed != u'0'; }},
        {u'B', [](QChar typed) { return typed == u'0' || typed == u'1'; }},
        {u'H',
         [](QChar typed) { return QStringView(u"0123456789ABCDEF").contains(typed.toUpper()); }},
        {u'A', [](QChar typed) { return typed.isLetter(); }},
        {u'N', [](QChar typed) { return typed.isLetterOrNumber(); }},
        {u'X', [](QChar typed) { return !typed.isSpace(); }},
    };
    return places.value(symbol.toUpper());
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
    QChar letterCase;
    bool escaped = false;
    for (const auto symbol : QStringView(mask).left(delimiter < 0 ? mask.size() : delimiter)) {
        const auto isLiteral = std::exchange(escaped, false);
        if (!isLiteral && symbol == u'\\') {
            escaped = true;
        } else if (!isLiteral && QStringView(u"><!").contains(symbol)) {
            letterCase = symbol;
        } else {
            // Small letters are the places that may stay empty.
            places.append({symbol, letterCase, isLiteral ? nullptr : acceptsOf(symbol),
                           symbol == u'9' || symbol.isUpper()});
        }
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
            auto character = typed.front();
            if (place.letterCase == u'>')
                character = character.toUpper();
            else if (place.letterCase == u'<')
                character = character.toLower();
            result.append(character);
            typed = typed.sliced(1);
        } else if (place.isRequired) {
            return std::nullopt;
        }
    }
    return withoutSeparators(typed).isEmpty() ? std::optional(result) : std::nullopt;
}

} // namespace till
