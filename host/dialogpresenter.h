#pragma once

#include "host/basicdialog.h"
#include "host/dialogrequests.h"
#include "host/export.h"

#include <QVariantMap>

/// How a till shows its dialogs. See `Dialog` for what each call means.
class HOST_EXPORT DialogPresenter
{
public:
    DialogPresenter() = default;
    virtual ~DialogPresenter();
    Q_DISABLE_COPY_MOVE(DialogPresenter)

    virtual void showError(const tr::Tr &text) = 0;
    virtual void showMessage(const tr::Tr &text) = 0;
    virtual bool showChoice(const tr::Tr &question, const tr::Tr &ok, const tr::Tr &cancel) = 0;
    virtual core::BasicDialog::Result showInputText(const InputTextRequest &request) = 0;
    virtual QVariantMap showForm(const FormRequest &request) = 0;
    /// Shows a progress message until the matching `hideProgress`.
    virtual void showProgress(const ProgressRequest &request) = 0;
    virtual void hideProgress() = 0;
};
