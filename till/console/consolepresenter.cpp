#include "till/console/consolepresenter.h"

#include "till/console/console.h"
#include "till/console/formfield.h"
#include "till/core/inputmask.h"
#include "till/words/figures.h"

#include <host/session.h>

using namespace Qt::StringLiterals;

namespace till {

namespace {

class Progress : public ProgressDisplay
{
public:
    explicit Progress(Console &console)
        : console(console)
    {}
    void setProgress(const tr::Tr &text, int value) override
    {
        console.line(u"... %1 (%2%)"_s.arg(text.toString()).arg(value));
    }

private:
    Console &console;
};

bool isAnswer(const QString &typed, const QString &number, const tr::Tr &text)
{
    return typed == number || typed.compare(text.toString(), Qt::CaseInsensitive) == 0;
}

QString line(const QString &kind, const tr::Tr &text)
{
    return u"[%1] %2"_s.arg(kind, oneLine(text.toString()));
}

/// A dialog's first line; tells how to cancel it when that is possible.
QString titleLine(const QString &kind, const tr::Tr &title, bool cancellable)
{
    return line(kind, title) + (cancellable ? ConsoleText::tr(" (/cancel leaves)") : QString());
}

} // namespace

ConsolePresenter::ConsolePresenter(Console &console)
    : console(console)
{
    Singleton<Session>::instance()->setProgressDisplay(QSharedPointer<Progress>::create(console));
}

ConsolePresenter::~ConsolePresenter()
{
    Singleton<Session>::instance()->setProgressDisplay({});
}

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
    console.line(u"[%1] %2"_s.arg(ConsoleText::tr("question"), question.toString()));
    const auto answers = u"1 - %1, 2 - %2:"_s.arg(ok.toString(), cancel.toString());
    while (const auto typed = ask(answers, true)) {
        if (isAnswer(typed->trimmed(), u"1"_s, ok))
            return true;
        if (isAnswer(typed->trimmed(), u"2"_s, cancel))
            return false;
        console.line(ConsoleText::tr("Type 1 or 2."));
    }
    return false;
}

core::BasicDialog::Result ConsolePresenter::showInputText(const InputTextRequest &request)
{
    console.line(titleLine(ConsoleText::tr("input"), request.title, request.cancellable != 0));
    auto question = request.message.toString();
    if (!request.inputMask.isEmpty())
        question += u" (%1)"_s.arg(InputMask(request.inputMask).outline());
    if (!request.initialText.isEmpty())
        question += u" [%1]"_s.arg(oneLine(request.initialText));
    while (const auto typed = ask(question + u':', request.cancellable != 0)) {
        const auto text = shapeText(typed->isEmpty() ? request.initialText : *typed,
                                    request.inputMask, request.validator);
        if (!text)
            console.line(text.error());
        else if (request.maximumLength > 0 && text->size() > request.maximumLength)
            console.line(ConsoleText::tr("Type at most %1 characters.").arg(request.maximumLength));
        else
            return core::BasicDialog::Result(*text);
    }
    return {};
}

QVariantMap ConsolePresenter::showForm(const FormRequest &request)
{
    console.line(titleLine(ConsoleText::tr("form"), request.title, request.cancellable));
    if (!request.subtitle.isEmpty())
        console.line(request.subtitle.toString());
    QVariantMap answers;
    for (const auto &field : request.fields) {
        auto answer = readField(field, {});
        if (request.readOnly || !field.editable) {
            console.line(fieldStatement(field));
            answers.insert(field.key, answer.value_or(field.value));
            continue;
        }
        do {
            const auto typed = ask(fieldQuestion(field), request.cancellable);
            if (!typed)
                return {};
            answer = readField(field, *typed);
            if (!answer)
                console.line(answer.error());
        } while (!answer);
        if (answer->isValid())
            answers.insert(field.key, *answer);
    }
    return answers;
}

void ConsolePresenter::showProgress(const ProgressRequest &request)
{
    console.line(u"... %1"_s.arg(request.message.toString()));
}

std::optional<QString> ConsolePresenter::ask(const QString &question, bool cancellable)
{
    for (;;) {
        const auto line = console.ask(question);
        const auto isCancelled = line.text == "/cancel"_L1;
        if (line.kind == ConsoleLine::Kind::End || (isCancelled && cancellable))
            return std::nullopt;
        if (line.kind == ConsoleLine::Kind::Text && !isCancelled)
            return line.text;
        console.line(isCancelled ? ConsoleText::tr("This cannot be cancelled.") : line.text);
    }
}

} // namespace till
