#pragma once

#include <host/dialogpresenter.h>

#include <QStringList>

namespace till {

/// A face's dialogs with a memory: every text that the cashier is told goes into the log, and can
/// be asked for.
class ToldTexts : public DialogPresenter
{
public:
    /// The face must outlive this object.
    explicit ToldTexts(DialogPresenter &face)
        : face(face)
    {}

    /// The messages and errors shown since the last call.
    QString take();
    /// Has the log keep what a face tells the cashier by itself.
    static void note(const QString &text);

    void showError(const tr::Tr &text) override;
    void showMessage(const tr::Tr &text) override;
    bool showChoice(const tr::Tr &question, const tr::Tr &ok, const tr::Tr &cancel) override;
    core::BasicDialog::Result showInputText(const InputTextRequest &request) override;
    QVariantMap showForm(const FormRequest &request) override;
    void showProgress(const ProgressRequest &request) override;
    void hideProgress() override;

private:
    void keep(const tr::Tr &text);

    DialogPresenter &face;
    QStringList texts;
};

} // namespace till
