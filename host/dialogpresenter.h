#pragma once

#include "host/basicdialog.h"
#include "host/dialogrequests.h"
#include "host/export.h"
#include "host/hostobject.h"

#include <QVariantMap>

/// Draws the till's dialogs. `Dialog` explains each call.
///
/// Calls come in the plugin's thread. A call with a result blocks until the cashier answers.
class HOST_EXPORT DialogPresenter : public HostObject
{
public:
    virtual void showError(const tr::Tr &text) = 0;
    virtual void showMessage(const tr::Tr &text) = 0;
    /// \return Whether `ok` was chosen; false when the question was cancelled.
    virtual bool showChoice(const tr::Tr &question, const tr::Tr &ok, const tr::Tr &cancel) = 0;
    /// A default result when the input was cancelled.
    virtual core::BasicDialog::Result showInputText(const InputTextRequest &request) = 0;
    /// The answers by field key; empty when the form was cancelled.
    virtual QVariantMap showForm(const FormRequest &request) = 0;
    /// Shows a progress message until the matching `hideProgress`.
    virtual void showProgress(const ProgressRequest &request) = 0;
    /// Called once for each `showProgress`.
    virtual void hideProgress() = 0;
};
