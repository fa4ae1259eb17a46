#include "till/console/formfield.h"

#include "till/console/texts.h"
#include "till/core/inputmask.h"
#include "till/core/numbers.h"

#include <QRegularExpression>

namespace till {

namespace {

constexpr QStringView dateFormat = u"dd.MM.yyyy";

QString dateProblem(const FormField &field, const QDate &date)
{
    if (!date.isValid())
        return ConsoleText::tr("A date such as 31.12.1990 is expected.");
    if (field.minDate.isValid() && date < field.minDate)
        return ConsoleText::tr("The date must not be before %1.")
            .arg(field.minDate.toString(dateFormat));
    if (field.maxDate.isValid() && date > field.maxDate)
        return ConsoleText::tr("The date must not be after %1.")
            .arg(field.maxDate.toString(dateFormat));
    return {};
}

FieldReading readChoice(const FormField &field, const QString &text)
{
    const auto count = static_cast<int>(field.options.size());
    if (const auto number = parseWhole(text, 1, count))
        return {*number - 1, {}};
    for (int index = 0; index < count; ++index) {
        if (field.options.at(index).toString().compare(text, Qt::CaseInsensitive) == 0)
            return {index, {}};
    }
    return {{}, ConsoleText::tr("A number from 1 to %1 is expected.").arg(count)};
}

FieldReading readText(const FormField &field, QString text)
{
    const auto problem = shapeText(text, field.inputMask, field.validator);
    return {text, problem};
}

/// The text that an empty line stands for, as it would be typed.
QString firstValue(const FormField &field)
{
    if (field.kind == FormFieldKind::Choice) {
        const auto index = parseWhole(field.value, 0, static_cast<int>(field.options.size()) - 1);
        return index ? QString::number(*index + 1) : QString();
    }
    return InputMask(field.inputMask).apply(field.value).value_or(field.value);
}

} // namespace

FieldReading readField(const FormField &field, const QString &typed)
{
    auto text = typed.trimmed();
    if (text.isEmpty())
        text = firstValue(field);
    else if (text == QLatin1String("/clear"))
        text.clear();
    if (text.isEmpty()) {
        if (field.mandatory)
            return {{}, ConsoleText::tr("This field must be filled in.")};
        return {field.kind == FormFieldKind::Text ? QVariant(QString()) : QVariant(), {}};
    }
    switch (field.kind) {
    case FormFieldKind::Choice:
        return readChoice(field, text);
    case FormFieldKind::Date: {
        const auto date = QDate::fromString(text, dateFormat);
        return {date, dateProblem(field, date)};
    }
    default:
        return readText(field, text);
    }
}

QVariant fixedValue(const FormField &field)
{
    auto shown = field;
    shown.mandatory = false;
    shown.validator.clear();
    const auto reading = readField(shown, {});
    return reading.problem.isEmpty() ? reading.value : QVariant(field.value);
}

QString fieldQuestion(const FormField &field)
{
    QStringList limits;
    if (!field.inputMask.isEmpty())
        limits.append(InputMask(field.inputMask).outline());
    if (field.kind == FormFieldKind::Date) {
        limits.append(dateFormat.toString());
        if (field.minDate.isValid())
            limits.append(ConsoleText::tr("from %1").arg(field.minDate.toString(dateFormat)));
        if (field.maxDate.isValid())
            limits.append(ConsoleText::tr("to %1").arg(field.maxDate.toString(dateFormat)));
    }
    for (int index = 0; index < field.options.size(); ++index)
        limits.append(
            QStringLiteral("%1 - %2").arg(index + 1).arg(field.options.at(index).toString()));
    if (!field.mandatory)
        limits.append(ConsoleText::tr("may be empty"));
    auto question = field.label.toString();
    if (!limits.isEmpty())
        question += QStringLiteral(" (%1)").arg(limits.join(QLatin1String(", ")));
    if (const auto value = firstValue(field); !value.isEmpty())
        question += QStringLiteral(" [%1]").arg(value);
    return question + u':';
}

QString fieldStatement(const FormField &field)
{
    auto value = firstValue(field);
    if (field.kind == FormFieldKind::Choice && !value.isEmpty())
        value = field.options.at(value.toInt() - 1).toString();
    return QStringLiteral("%1: %2").arg(field.label.toString(), value);
}

QString shapeText(QString &text, const QString &inputMask, const QString &validator)
{
    const InputMask mask(inputMask);
    const auto shaped = mask.isEmpty() ? std::optional(text) : mask.apply(text);
    if (!shaped)
        return ConsoleText::tr("The text does not fit %1.").arg(mask.outline());
    text = *shaped;
    const QRegularExpression pattern(QRegularExpression::anchoredPattern(validator));
    if (!validator.isEmpty() && !pattern.match(text).hasMatch())
        return ConsoleText::tr("The text is not of the form expected here.");
    return {};
}

} // namespace till
