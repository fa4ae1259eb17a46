#pragma once

#include "benchmarks/setup.h"

#include "till/core/till.h"

#include <host/dialogpresenter.h>

namespace bench {

/// Nobody is at the till.
class NoFace : public DialogPresenter
{
public:
    void showError(const tr::Tr & /*text*/) override {}
    void showMessage(const tr::Tr & /*text*/) override {}
    bool showChoice(const tr::Tr & /*question*/, const tr::Tr & /*yes*/,
                    const tr::Tr & /*no*/) override
    {
        return false;
    }
    core::BasicDialog::Result showInputText(const InputTextRequest & /*request*/) override
    {
        return {};
    }
    QVariantMap showForm(const FormRequest & /*request*/) override { return {}; }
    void showProgress(const ProgressRequest & /*request*/) override {}
    void hideProgress() override {}
};

/// A till with a new store and the built plugin, at which nobody answers a dialog.
class TillAtWork
{
public:
    explicit TillAtWork(Setup &setup, const till::BackoffRange &backoff = {});
    ~TillAtWork();
    Q_DISABLE_COPY_MOVE(TillAtWork)

    /// Why it cannot sell; empty when it can.
    const QString &error() const { return problem; }
    const QString &directory() const { return settings.dataDirectory; }
    till::Sale &sale() { return till->sale(); }
    void startDelivery() { till->startDelivery(); }
    /// Opens a sale and adds so many positions with a discount each.
    void sell(int positions);

private:
    NoFace face;
    till::Settings settings;
    QString problem;
    const QString queueBefore;
    std::unique_ptr<till::Till> till;
};

} // namespace bench
