#include "till/console/consolepresenter.h"

#include "till/console/console.h"
#include "till/console/formfield.h"
#include "till/console/inputmask.h"

#include <log4qt/logger.h>
#include <log4qt/logmanager.h>

#include <algorithm>

namespace till {

namespace {

/// The fields in the order they are asked for.
QList<FormField> fieldsInOrder(QList<FormField> fields)
{
    const auto isNumbered = [](const FormField &field) { return field.order >= 0; };
    if (std::all_of(fields.cbegin(), fields.cend(), isNumbered))
        std::stable_sort(
            fields.begin(), fields.end(),
            [](const FormField &left, const FormField &right) { return left.order < right.order; });
    return fields;
}

bool isAnswer(const QString &typed, const QString &number, const tr::Tr &text)
{
    return typed == number || typed.compare(text.toString(), Qt::CaseInsensitive) == 0;
}

/// Shows a message, and keeps it for the one who asks later what the cashier was told.
void tell(Console &console, const char *kind, const tr::Tr &text)
{
    static const auto *const logger = Log4Qt::LogManager::logger(QStringLiteral("till.dialog"));
    const auto line = QStringLiteral("[%1] %2").arg(QLatin1String(kind), text.toString());
    logger->info(QStringLiteral("%1"), line);
    console.line(line);
}

/// A dialog's first line, with the way out for one that is caught in it.
QString titleLine(const char *kind, const tr::Tr &title, bool cancellable)
{
    const auto line = QStringLiteral("[%1] %2").arg(QLatin1String(kind), title.toString());
    return cancellable ? line + QStringLiteral(" (/cancel leaves)") : line;
}

} // namespace

ConsolePresenter::ConsolePresenter(Console &console)
    : console(console)
{}

void ConsolePresenter::showError(const tr::Tr &text)
{
    tell(console, "error", text);
}

void ConsolePresenter::showMessage(const tr::Tr &text)
{
    tell(console, "message", text);
}

bool ConsolePresenter::showChoice(const tr::Tr &question, const tr::Tr &ok, const tr::Tr &cancel)
{
    console.line(QStringLiteral("[question] %1").arg(question.toString()));
    const auto answers = QStringLiteral("1 - %1, 2 - %2:").arg(ok.toString(), cancel.toString());
    while (const auto typed = ask(answers, true)) {
        if (isAnswer(typed->trimmed(), QStringLiteral("1"), ok))
            return true;
        if (isAnswer(typed->trimmed(), QStringLiteral("2"), cancel))
            return false;
        console.line(QStringLiteral("1 or 2 is expected."));
    }
    return false;
}

core::BasicDialog::Result ConsolePresenter::showInputText(const InputTextRequest &request)
{
    console.line(titleLine("input", request.title, request.cancellable != 0));
    auto question = request.message.toString();
    if (!request.inputMask.isEmpty())
        question += QStringLiteral(" (%1)").arg(InputMask(request.inputMask).outline());
    if (!request.initialText.isEmpty())
        question += QStringLiteral(" [%1]").arg(request.initialText);
    while (const auto typed = ask(question + u':', request.cancellable != 0)) {
        auto text = typed->isEmpty() ? request.initialText : *typed;
        auto problem = shapeText(text, request.inputMask, request.validator);
        if (request.maximumLength > 0 && text.size() > request.maximumLength)
            problem =
                QStringLiteral("At most %1 characters are expected.").arg(request.maximumLength);
        if (problem.isEmpty())
            return core::BasicDialog::Result(text);
        console.line(problem);
    }
    return {};
}

QVariantMap ConsolePresenter::showForm(const FormRequest &request)
{
    console.line(titleLine("form", request.title, request.cancellable));
    if (!request.subtitle.isEmpty())
        console.line(request.subtitle.toString());
    QVariantMap answers;
    for (const auto &field : fieldsInOrder(request.fields)) {
        if (request.readOnly || !field.editable) {
            console.line(fieldStatement(field));
            answers.insert(field.key, fixedValue(field));
            continue;
        }
        const auto answer = askField(field, request.cancellable);
        if (!answer)
            return {};
        if (answer->isValid())
            answers.insert(field.key, *answer);
    }
    return answers;
}

void ConsolePresenter::showProgress(const ProgressRequest &request)
{
    console.line(QStringLiteral("... %1").arg(request.message.toString()));
}

void ConsolePresenter::hideProgress() {}

std::optional<QString> ConsolePresenter::ask(const QString &question, bool cancellable)
{
    for (;;) {
        const auto line = console.ask(question);
        if (line.kind == ConsoleLine::Kind::End)
            return std::nullopt;
        if (line.kind == ConsoleLine::Kind::Refused)
            console.line(line.text);
        else if (line.text != QLatin1String("/cancel"))
            return line.text;
        else if (cancellable)
            return std::nullopt;
        else
            console.line(QStringLiteral("This cannot be cancelled."));
    }
}

std::optional<QVariant> ConsolePresenter::askField(const FormField &field, bool cancellable)
{
    while (const auto typed = ask(fieldQuestion(field), cancellable)) {
        const auto reading = readField(field, *typed);
        if (reading.problem.isEmpty())
            return reading.value;
        console.line(reading.problem);
    }
    return std::nullopt;
}

ConsoleProgressDisplay::ConsoleProgressDisplay(Console &console)
    : console(console)
{}

void ConsoleProgressDisplay::setProgress(const tr::Tr &text, int value)
{
    console.line(QStringLiteral("... %1 (%2%)").arg(text.toString()).arg(value));
}

} // namespace till
