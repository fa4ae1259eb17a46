#include "till/console/formfield.h"

#include "till/console/console.h"
#include "till/core/inputmask.h"
#include "till/core/numbers.h"
#include "till/words/figures.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace till {

namespace {

using Reading = tl::expected<QVariant, QString>;

Reading readDate(const FormField &field, const QString &text)
{
    const auto date = QDate::fromString(text, dateFormat.toString());
    if (!date.isValid())
        return tl::unexpected(ConsoleText::tr("Type a date such as 31.12.1990."));
    if (field.minDate.isValid() && date < field.minDate)
        return tl::unexpected(
            ConsoleText::tr("The date must not be before %1.").arg(dateLabel(field.minDate)));
    if (field.maxDate.isValid() && date > field.maxDate)
        return tl::unexpected(
            ConsoleText::tr("The date must not be after %1.").arg(dateLabel(field.maxDate)));
    return date;
}

Reading readChoice(const FormField &field, const QString &text)
{
    const auto count = static_cast<int>(field.options.size());
    for (int index = 0; index < count; ++index) {
        if (text == QString::number(index + 1) ||
            text.compare(field.options.at(index).toString(), Qt::CaseInsensitive) == 0)
            return index;
    }
    return tl::unexpected(ConsoleText::tr("Type a number from 1 to %1.").arg(count));
}

/// The text that an empty line stands for.
QString firstValue(const FormField &field)
{
    if (field.kind == FormFieldKind::Choice) {
        const auto index = parseWhole(field.value, 0, static_cast<int>(field.options.size()) - 1);
        return index ? QString::number(*index + 1) : QString();
    }
    return InputMask(field.inputMask).apply(field.value).value_or(field.value);
}

} // namespace

Reading readField(const FormField &field, const QString &typed)
{
    const auto line = typed.trimmed();
    const auto kept = line.isEmpty() ? firstValue(field) : line;
    const auto text = line == "/clear"_L1 ? QString() : kept;
    if (text.isEmpty() && field.mandatory)
        return tl::unexpected(ConsoleText::tr("This field must be filled in."));
    if (text.isEmpty())
        return field.kind == FormFieldKind::Text ? QVariant(text) : QVariant();
    if (field.kind == FormFieldKind::Choice)
        return readChoice(field, text);
    if (field.kind == FormFieldKind::Date)
        return readDate(field, text);
    return shapeText(text, field.inputMask, field.validator);
}

QString fieldQuestion(const FormField &field)
{
    QStringList limits;
    if (!field.inputMask.isEmpty())
        limits.append(InputMask(field.inputMask).outline());
    if (field.kind == FormFieldKind::Date)
        limits.append(dateFormat.toString());
    if (field.minDate.isValid())
        limits.append(ConsoleText::tr("from %1").arg(dateLabel(field.minDate)));
    if (field.maxDate.isValid())
        limits.append(ConsoleText::tr("to %1").arg(dateLabel(field.maxDate)));
    for (int index = 0; index < field.options.size(); ++index)
        limits.append(u"%1 - %2"_s.arg(index + 1).arg(field.options.at(index).toString()));
    if (!field.mandatory)
        limits.append(ConsoleText::tr("may be empty"));
    auto question = field.label.toString();
    if (!limits.isEmpty())
        question += u" (%1)"_s.arg(limits.join(", "_L1));
    if (const auto value = firstValue(field); !value.isEmpty())
        question += u" [%1]"_s.arg(oneLine(value));
    return question + u':';
}

QString fieldStatement(const FormField &field)
{
    auto value = firstValue(field);
    if (field.kind == FormFieldKind::Choice && !value.isEmpty())
        value = field.options.at(value.toInt() - 1).toString();
    return u"%1: %2"_s.arg(field.label.toString(), oneLine(value));
}

tl::expected<QString, QString> shapeText(const QString &text, const QString &inputMask,
                                         const QString &validator)
{
    const InputMask mask(inputMask);
    const auto shaped = mask.isEmpty() ? std::optional(text) : mask.apply(text);
    if (!shaped)
        return tl::unexpected(ConsoleText::tr("The text does not fit %1.").arg(mask.outline()));
    const QRegularExpression pattern(QRegularExpression::anchoredPattern(validator));
    if (!validator.isEmpty() && !pattern.match(*shaped).hasMatch())
        return tl::unexpected(ConsoleText::tr("The text is not in the expected format."));
    return *shaped;
}

} // namespace till
