#include "till/core/inputmask.h"

#include <QHash>
#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace till {

namespace {

/// The regular expression of a place with that symbol; empty for a literal.
QString placeOf(QChar symbol)
{
    static const QHash<QChar, QString> places{
        {u'9', u"([0-9])"_s},     {u'0', u"([0-9]?)"_s},          {u'A', uR"((\p{L}))"_s},
        {u'a', uR"((\p{L}?))"_s}, {u'N', uR"(([\p{L}\p{N}]))"_s}, {u'n', uR"(([\p{L}\p{N}]?))"_s},
    };
    return places.value(symbol);
}

} // namespace

std::optional<QString> InputMask::apply(const QString &typed) const
{
    static const QRegularExpression separators(uR"([^\p{L}\p{N}])"_s);
    auto text = typed.trimmed();
    if (isEmpty() || text.isEmpty())
        return text;
    // Behind a "+" the literals are there to be taken as such; digits alone may be all places.
    const auto perhaps = text.front().isLetterOrNumber() ? "?"_L1 : "?+"_L1;
    QString pattern;
    for (const auto symbol : shape) {
        pattern += placeOf(symbol);
        if (placeOf(symbol).isEmpty() && symbol.isLetterOrNumber())
            pattern += QString(symbol) + perhaps;
    }
    if (shape.startsWith("+7"_L1))
        pattern.replace(0, 1, "[78]"_L1);
    const QRegularExpression whole(QRegularExpression::anchoredPattern(pattern));
    const auto match = whole.match(QString(text).remove(separators));
    if (!match.hasMatch())
        return std::nullopt;
    QString shaped;
    int place = 0;
    for (const auto symbol : shape)
        shaped += placeOf(symbol).isEmpty() ? QString(symbol) : match.captured(++place);
    return shaped;
}

QString InputMask::outline() const
{
    QString shown;
    for (const auto symbol : shape)
        shown += placeOf(symbol).isEmpty() ? symbol : blank;
    return shown;
}

} // namespace till
