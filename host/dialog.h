#pragma once

#include "host/basicdialog.h"
#include "host/dialogrequests.h"
#include "host/export.h"
#include "host/hostobject.h"
#include "host/mockfactory.h"

#include <QSharedPointer>
#include <QString>
#include <QVariantMap>

#include <functional>

class DialogPresenter;

/// A progress message that shows as long as this object lives.
class HOST_EXPORT SimpleProgress : public HostObject
{};

/// The plugin's dialogs with the cashier.
///
/// Each call blocks until the cashier answers. The till sets the presenter that draws the dialogs;
/// without one, every question counts as cancelled.
class HOST_EXPORT Dialog : public HostObject
{
public:
    /// Hears the text of each dialog before it is drawn; `isNotice` for an error or a message.
    using Listener = std::function<void(const QString &text, bool isNotice)>;
    /// The till's presenter, not owned; null for none. The listener may be empty.
    static void setPresenter(DialogPresenter *presenter, Listener listener = {});

    /// An error to be acknowledged. `code` and `flags` are for hosts that number their errors.
    virtual void showError(const tr::Tr &text, int code, int flags);
    /// A notice to be acknowledged.
    virtual void showMessage(const tr::Tr &text, int code, int flags);
    /// A question with two answers. \return Whether the cashier chose `ok`.
    virtual bool showChoice(const tr::Tr &question, int kind, const tr::Tr &ok,
                            const tr::Tr &cancel, int defaultAnswer);
    /// A line of text. The result distinguishes an empty text from a cancelled input.
    virtual core::BasicDialog::Result showInputText(const InputTextRequest &request);
    /// A form. \return The answers by field key; empty when the cashier cancelled.
    virtual QVariantMap showForm(const FormRequest &request);
    /// A progress message; the call does not block. Never null.
    virtual QSharedPointer<SimpleProgress> showProgress(const ProgressRequest &request);
    /// The same, with `text` as the message and `details` as the title.
    virtual QSharedPointer<SimpleProgress> showProgress(const tr::Tr &text, const tr::Tr &details);
};

extern template class HOST_EXPORT MockFactory<Dialog>;
