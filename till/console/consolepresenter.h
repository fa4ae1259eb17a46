#pragma once

#include <host/dialogpresenter.h>
#include <host/session.h>

#include <optional>

namespace till {

class Console;

/// The till's dialogs as lines of text.
///
/// Every question takes one line of the input, again as long as the line cannot be the answer.
/// "/cancel" and the end of the input cancel. Messages and errors need no answer.
class ConsolePresenter : public DialogPresenter
{
public:
    /// The console must outlive the presenter.
    explicit ConsolePresenter(Console &console);

    void showError(const tr::Tr &text) override;
    void showMessage(const tr::Tr &text) override;
    /// Answered by "1" or "2" or by the text of either answer.
    bool showChoice(const tr::Tr &question, const tr::Tr &ok, const tr::Tr &cancel) override;
    /// The text goes on as it was typed. An empty line stands for the initial text.
    core::BasicDialog::Result showInputText(const InputTextRequest &request) override;
    /// Asks for one field after the other; see `readField` for what may be typed.
    QVariantMap showForm(const FormRequest &request) override;
    void showProgress(const ProgressRequest &request) override;
    void hideProgress() override;

private:
    std::optional<QString> ask(const QString &question, bool cancellable);
    std::optional<QVariant> askField(const FormField &field, bool cancellable);

    Console &console;
};

/// The till's progress display as lines of text.
class ConsoleProgressDisplay : public ProgressDisplay
{
public:
    /// The console must outlive the display.
    explicit ConsoleProgressDisplay(Console &console);

    void setProgress(const tr::Tr &text, int value) override;

private:
    Console &console;
};

} // namespace till
