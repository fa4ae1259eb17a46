#include "till/window/windowpresenter.h"

#include "till/window/formdialog.h"

namespace till {

namespace {

using namespace Qt::StringLiterals;
using Kind = MessageDialog::Kind;

constexpr auto inputKey = "input"_L1;

} // namespace

void WindowPresenter::showError(const tr::Tr &text)
{
    ask([=, this] {
        return new MessageDialog(window, Kind::Error, {tr("Error"), text.toString()});
    });
}

void WindowPresenter::showMessage(const tr::Tr &text)
{
    ask([=, this] { return new MessageDialog(window, Kind::Plain, {{}, text.toString()}); });
}

bool WindowPresenter::showChoice(const tr::Tr &question, const tr::Tr &ok, const tr::Tr &cancel)
{
    const auto given = ask([=, this] {
        return new MessageDialog(window, Kind::Plain,
                                 {{}, question.toString(), cancel.toString(), ok.toString()});
    });
    return given.has_value();
}

core::BasicDialog::Result WindowPresenter::showInputText(const InputTextRequest &request)
{
    const auto given = ask([=, this] { return makeInput(request); });
    return given ? core::BasicDialog::Result(given->value(inputKey).toString())
                 : core::BasicDialog::Result();
}

QVariantMap WindowPresenter::showForm(const FormRequest &request)
{
    const auto given = ask([=, this] {
        return new FormDialog(window,
                              {request.title.toString(), request.subtitle.toString(), tr("Cancel")},
                              request.fields);
    });
    return given.value_or(QVariantMap());
}

void WindowPresenter::showProgress(const ProgressRequest &request)
{
    const auto text = QStringList({request.title.toString(), request.message.toString()});
    emit progressChanged(text.join(u' ').trimmed());
}

void WindowPresenter::hideProgress()
{
    emit progressChanged({});
}

void WindowPresenter::setProgress(const tr::Tr &text, int /*value*/)
{
    emit progressChanged(text.toString());
}

void WindowPresenter::endStep()
{
    attempt = 0;
    emit progressChanged({});
}

void WindowPresenter::setRefusing(bool on)
{
    refuses = on;
    if (on && shown)
        shown->done(QDialog::Rejected);
}

/// Shows a dialog on the window's thread and waits for the answer.
WindowPresenter::Answer WindowPresenter::ask(const std::function<MessageDialog *()> &make)
{
    QMetaObject::invokeMethod(this, [this, make] {
        if (refuses)
            answer({});
        else
            present(make());
    });
    answered.acquire();
    return given;
}

void WindowPresenter::answer(const Answer &answer)
{
    given = answer;
    answered.release();
}

void WindowPresenter::present(MessageDialog *dialog)
{
    shown = dialog;
    connect(dialog, &QDialog::finished, this, [this, dialog](int code) {
        shown = nullptr;
        emit asking(false);
        answer(code == QDialog::Accepted ? Answer(dialog->answers()) : Answer());
    });
    dialog->appear();
    emit asking(true);
}

/// A form of one text. Supports only the parts of a request that the loyalty plugin uses. Without a
/// count the same question again would look like no reaction.
MessageDialog *WindowPresenter::makeInput(const InputTextRequest &request)
{
    const auto identity = request.title.toString() + request.inputId;
    attempt = attempt > 0 && identity == asked ? attempt + 1 : 1;
    asked = identity;
    QStringList text{request.message.toString(), about};
    if (attempt > 1)
        text.append(tr("Attempt %1").arg(attempt));
    text.removeAll(QString());
    FormField field;
    field.key = inputKey;
    field.kind = FormFieldKind::Text;
    field.mandatory = false;
    return new FormDialog(window,
                          {request.title.toString(), text.join(u'\n'),
                           request.cancelText.toString(), request.okText.toString()},
                          {field}, request.scanAllowed);
}

} // namespace till
