#pragma once

#include "till/window/dialogframe.h"

#include <host/dialogpresenter.h>
#include <host/session.h>

#include <QObject>
#include <QPointer>

#include <functional>
#include <optional>
#include <semaphore>

namespace till {

class InputDialog;

/// The loyalty system's dialogs and its progress in the window.
///
/// Its dialogs are called on the till's thread, which waits until the cashier has answered; they
/// are shown on the thread of the window, in which this object lives.
class WindowPresenter : public QObject, public DialogPresenter, public ProgressDisplay
{
    Q_OBJECT
public:
    /// The window must outlive the presenter.
    explicit WindowPresenter(QWidget &window);

    void showError(const tr::Tr &text) override;
    void showMessage(const tr::Tr &text) override;
    bool showChoice(const tr::Tr &question, const tr::Tr &ok, const tr::Tr &cancel) override;
    core::BasicDialog::Result showInputText(const InputTextRequest &request) override;
    QVariantMap showForm(const FormRequest &request) override;
    void showProgress(const ProgressRequest &request) override;
    void hideProgress() override;
    void setProgress(const tr::Tr &text, int value) override;

    /// Whether a dialog waits for the cashier.
    bool isAsking() const { return bool(shown); }
    /// The till's step has ended: what is left of its dialogs goes.
    void endStep();
    /// Whether every dialog is answered as cancelled, the open one included.
    void setRefusing(bool on);

signals:
    void asking(bool on);
    /// What the till waits for; empty when nothing is said of it.
    void progressChanged(const QString &text);

private:
    /// Nothing for a dialog that was cancelled.
    using Answer = std::optional<QVariant>;

    Answer ask(const std::function<void()> &show);
    void answer(const Answer &answer);
    void tell(MessageDialog::Kind kind, const tr::Tr &text);
    void present(
        DialogFrame *dialog, const std::function<QVariant()> &result = [] { return QVariant(); });
    void presentInput(const InputTextRequest &request);
    void closeInput();
    void setShown(DialogFrame *dialog);

    QWidget &window;
    QPointer<DialogFrame> shown;
    InputDialog *input = nullptr;         ///< Kept behind an answer, for a second question.
    std::optional<InputTextRequest> left; ///< What the cashier left while it was looked at.

    bool refuses = false;
    Answer given; ///< Read on the till's thread, once it has been `answered`.
    std::binary_semaphore answered{0};
};

} // namespace till
