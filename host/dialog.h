#pragma once

#include "host/basicdialog.h"
#include "host/dialogrequests.h"
#include "host/export.h"
#include "host/hostobject.h"
#include "host/mockfactory.h"

#include <QSharedPointer>
#include <QVariantMap>

class DialogPresenter;

/// A progress message that shows as long as this object lives.
class HOST_EXPORT SimpleProgress : public HostObject
{};

/// Everything a plugin may show to the cashier or ask of them.
///
/// Each call blocks until the cashier has answered. What it looks like is up to the presenter that
/// the till sets once; with none, every question is answered as if it had been cancelled.
class HOST_EXPORT Dialog : public HostObject
{
public:
    /// The till's presenter, not owned; null for none.
    static void setPresenter(DialogPresenter *presenter);

    /// An error to be acknowledged. `code` and `flags` are for hosts that number their errors.
    virtual void showError(const tr::Tr &text, int code, int flags);
    /// A notice to be acknowledged.
    virtual void showMessage(const tr::Tr &text, int code, int flags);
    /// A question with two answers. \return Whether the cashier chose `ok`.
    virtual bool showChoice(const tr::Tr &question, int kind, const tr::Tr &ok,
                            const tr::Tr &cancel, int defaultAnswer);
    /// A line of text. The result tells an empty text from a cancelled input.
    virtual core::BasicDialog::Result showInputText(const InputTextRequest &request);
    /// A form. \return The answers by field key; empty when the cashier cancelled.
    virtual QVariantMap showForm(const FormRequest &request);
    /// A message while something is under way, which is not waited for. Never null.
    virtual QSharedPointer<SimpleProgress> showProgress(const ProgressRequest &request);
    /// The same, with `text` as the message and `details` as the title.
    virtual QSharedPointer<SimpleProgress> showProgress(const tr::Tr &text, const tr::Tr &details);
};

extern template class HOST_EXPORT MockFactory<Dialog>;
