#include "till/console/consolepresenter.h"

#include "till/console/console.h"
#include "till/console/formfield.h"
#include "till/console/texts.h"
#include "till/core/formfields.h"
#include "till/core/inputmask.h"

namespace till {

namespace {

bool isAnswer(const QString &typed, const QString &number, const tr::Tr &text)
{
    return typed == number || typed.compare(text.toString(), Qt::CaseInsensitive) == 0;
}

QString line(const QString &kind, const tr::Tr &text)
{
    return QStringLiteral("[%1] %2").arg(kind, text.toString());
}

/// A dialog's first line, with the way out for one that is caught in it.
QString titleLine(const QString &kind, const tr::Tr &title, bool cancellable)
{
    return line(kind, title) + (cancellable ? ConsoleText::tr(" (/cancel leaves)") : QString());
}

} // namespace

ConsolePresenter::ConsolePresenter(Console &console)
    : console(console)
{}

void ConsolePresenter::showError(const tr::Tr &text)
{
    console.line(line(ConsoleText::tr("error"), text));
}

void ConsolePresenter::showMessage(const tr::Tr &text)
{
    console.line(line(ConsoleText::tr("message"), text));
}

bool ConsolePresenter::showChoice(const tr::Tr &question, const tr::Tr &ok, const tr::Tr &cancel)
{
    console.line(line(ConsoleText::tr("question"), question));
    const auto answers = QStringLiteral("1 - %1, 2 - %2:").arg(ok.toString(), cancel.toString());
    while (const auto typed = ask(answers, true)) {
        if (isAnswer(typed->trimmed(), QStringLiteral("1"), ok))
            return true;
        if (isAnswer(typed->trimmed(), QStringLiteral("2"), cancel))
            return false;
        console.line(ConsoleText::tr("1 or 2 is expected."));
    }
    return false;
}

core::BasicDialog::Result ConsolePresenter::showInputText(const InputTextRequest &request)
{
    console.line(titleLine(ConsoleText::tr("input"), request.title, request.cancellable != 0));
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
                ConsoleText::tr("At most %1 characters are expected.").arg(request.maximumLength);
        if (problem.isEmpty())
            return core::BasicDialog::Result(text);
        console.line(problem);
    }
    return {};
}

QVariantMap ConsolePresenter::showForm(const FormRequest &request)
{
    console.line(titleLine(ConsoleText::tr("form"), request.title, request.cancellable));
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
            console.line(ConsoleText::tr("This cannot be cancelled."));
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
