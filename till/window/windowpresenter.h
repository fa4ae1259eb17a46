#pragma once

#include "till/window/messagedialog.h"

#include <host/dialogpresenter.h>
#include <host/session.h>

#include <QPointer>

#include <functional>
#include <optional>
#include <semaphore>

namespace till {

/// Shows the loyalty system's dialogs and progress in the window.
///
/// The till's thread calls the dialogs and waits for the cashier's answer. The window's thread, in
/// which this object lives, shows them.
class WindowPresenter : public QObject, public DialogPresenter, public ProgressDisplay
{
    Q_OBJECT
public:
    /// The window must outlive the presenter.
    explicit WindowPresenter(QWidget &window)
        : window(window)
    {}

    void showError(const tr::Tr &text) override;
    void showMessage(const tr::Tr &text) override;
    bool showChoice(const tr::Tr &question, const tr::Tr &ok, const tr::Tr &cancel) override;
    core::BasicDialog::Result showInputText(const InputTextRequest &request) override;
    QVariantMap showForm(const FormRequest &request) override;
    void showProgress(const ProgressRequest &request) override;
    void hideProgress() override;
    void setProgress(const tr::Tr &text, int value) override;

    /// Sets whom the next questions are about, such as a phone, for the cashier; empty for nobody.
    void setAbout(const QString &whom) { about = whom; }
    /// Whether a dialog waits for the cashier.
    bool isAsking() const { return bool(shown); }
    /// Call it after each of the till's steps.
    void endStep();
    /// Makes every dialog, also the open one, end as cancelled.
    void setRefusing(bool on);

signals:
    void asking(bool on);
    /// The progress text; empty for none.
    void progressChanged(const QString &text);

private:
    /// Nothing for a cancelled dialog.
    using Answer = std::optional<QVariantMap>;

    Answer ask(const std::function<MessageDialog *()> &make);
    void answer(const Answer &answer);
    void present(MessageDialog *dialog);
    MessageDialog *makeInput(const InputTextRequest &request);

    QWidget &window;
    QPointer<MessageDialog> shown;
    QString about;
    QString asked;   ///< Identifies the last input of the step.
    int attempt = 0; ///< How often it was asked for.
    bool refuses = false;
    Answer given; ///< Read on the till's thread after `answered`.
    std::binary_semaphore answered{0};
};

} // namespace till
