#pragma once

#include <host/dialogpresenter.h>

#include <optional>

namespace till {

class Console;

/// The till's dialogs, and its progress display while this object lives, as lines of text.
///
/// A question takes one line of the input, and asks again after a bad one. "/cancel" or the end of
/// the input cancels it. Messages and errors need no answer.
class ConsolePresenter : public DialogPresenter
{
public:
    /// The console must outlive the presenter.
    explicit ConsolePresenter(Console &console);
    ~ConsolePresenter() override;
    Q_DISABLE_COPY_MOVE(ConsolePresenter)

    void showError(const tr::Tr &text) override;
    void showMessage(const tr::Tr &text) override;
    /// The cashier types "1", "2" or the text of an answer.
    bool showChoice(const tr::Tr &question, const tr::Tr &ok, const tr::Tr &cancel) override;
    /// An empty line takes the initial text.
    core::BasicDialog::Result showInputText(const InputTextRequest &request) override;
    /// Asks for the fields one by one; `readField` tells what may be typed.
    QVariantMap showForm(const FormRequest &request) override;
    void showProgress(const ProgressRequest &request) override;
    void hideProgress() override {}

private:
    std::optional<QString> ask(const QString &question, bool cancellable);

    Console &console;
};

} // namespace till
