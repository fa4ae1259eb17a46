#include "till/window/windowpresenter.h"

#include "till/window/formdialog.h"
#include "till/window/inputdialog.h"

#include <utility>

namespace till {

namespace {

/// Whether both ask for the same, be it with other words.
bool isSame(const InputTextRequest &one, const InputTextRequest &other)
{
    return one.title == other.title && one.inputId == other.inputId;
}

} // namespace

WindowPresenter::WindowPresenter(QWidget &window)
    : window(window)
{}

void WindowPresenter::showError(const tr::Tr &text)
{
    tell(MessageDialog::Kind::Error, text);
}

void WindowPresenter::showMessage(const tr::Tr &text)
{
    tell(MessageDialog::Kind::Message, text);
}

bool WindowPresenter::showChoice(const tr::Tr &question, const tr::Tr &ok, const tr::Tr &cancel)
{
    const auto given = ask([this, question, ok, cancel] {
        present(new MessageDialog(window, MessageDialog::Kind::Question, question.toString(),
                                  ok.toString(), cancel.toString()));
    });
    return given.has_value();
}

core::BasicDialog::Result WindowPresenter::showInputText(const InputTextRequest &request)
{
    const auto given = ask([this, request] { presentInput(request); });
    return given ? core::BasicDialog::Result(given->toString()) : core::BasicDialog::Result();
}

QVariantMap WindowPresenter::showForm(const FormRequest &request)
{
    const auto given = ask([this, request] {
        auto *const form = new FormDialog(window, request);
        present(form, [form] { return form->answers(); });
    });
    return given.value_or(QVariant()).toMap();
}

void WindowPresenter::showProgress(const ProgressRequest &request)
{
    const auto text = QStringList({request.title.toString(), request.message.toString()});
    emit progressChanged(text.join(u'\n').trimmed());
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
    closeInput();
    left.reset();
    emit progressChanged({});
}

void WindowPresenter::setRefusing(bool on)
{
    refuses = on;
    if (on && shown)
        shown->done(QDialog::Rejected);
}

void WindowPresenter::tell(MessageDialog::Kind kind, const tr::Tr &text)
{
    ask([this, kind, text] {
        present(new MessageDialog(window, kind, text.toString(), tr("OK")));
    });
}

/// Has the window show a dialog, and waits for its answer.
WindowPresenter::Answer WindowPresenter::ask(const std::function<void()> &show)
{
    QMetaObject::invokeMethod(
        this,
        [this, show] {
            if (refuses)
                answer({});
            else
                show();
        },
        Qt::QueuedConnection);
    answered.acquire();
    return given;
}

void WindowPresenter::answer(const Answer &answer)
{
    given = answer;
    answered.release();
}

/// Shows a dialog that is answered by `result` once it is accepted.
void WindowPresenter::present(DialogFrame *dialog, const std::function<QVariant()> &result)
{
    closeInput();
    connect(
        dialog, &QDialog::finished, this,
        [this, result](int code) {
            setShown(nullptr);
            answer(code == QDialog::Accepted ? Answer(result()) : Answer());
        },
        Qt::SingleShotConnection);
    setShown(dialog);
}

void WindowPresenter::presentInput(const InputTextRequest &request)
{
    if (left && isSame(*left, request)) {
        answer({});
        return;
    }
    if (input && isSame(input->asked(), request)) {
        input->askAgain(request);
        setShown(input);
        return;
    }
    closeInput();
    input = new InputDialog(window, request);
    connect(input, &InputDialog::answered, this, [this](const QString &text) {
        setShown(nullptr);
        answer(text);
    });
    connect(
        input, &QDialog::finished, this,
        [this, request] {
            if (std::exchange(input, nullptr)->waits()) {
                left = request;
                return;
            }
            setShown(nullptr);
            answer({});
        },
        Qt::SingleShotConnection);
    setShown(input);
}

void WindowPresenter::closeInput()
{
    left.reset();
    if (input)
        std::exchange(input, nullptr)->dispose();
}

void WindowPresenter::setShown(DialogFrame *dialog)
{
    shown = dialog;
    if (dialog)
        dialog->appear();
    emit asking(dialog != nullptr);
}

} // namespace till
