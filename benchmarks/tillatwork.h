#pragma once

#include "benchmarks/measure.h"
#include "till/core/sale.h"
#include "till/core/till.h"

#include <host/abstractdocument.h>
#include <host/dialogpresenter.h>

#include <memory>

using namespace Qt::StringLiterals;

namespace bench {

/// A presenter without a cashier: every dialog is cancelled.
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

/// A till with the built plugin and no cashier.
class TillAtWork
{
public:
    explicit TillAtWork(const QString &directory)
    {
        settings.dataDirectory = directory;
        settings.pluginFile = QStringLiteral(PLUGIN_FILE);
        till = std::make_unique<till::Till>(settings, face);
        if (!till->start())
            fail(u"the till does not start"_s);
    }

    till::Sale &sale() { return till->sale(); }
    void startDelivery() { till->startDelivery(); }
    /// Opens a sale and adds that many positions, each with a discount.
    void sell(int positions)
    {
        sale().open(DocumentHeader::sale);
        for (int position = 1; position <= positions; ++position) {
            sale().add(u"4600"_s, u"Молоко 3,2 % 1 л"_s, 89.9, 1);
            sale().discount(position, 7.5, 417, 1, 0);
        }
    }
    /// \return Whether the receipt is committed.
    bool commit()
    {
        sale().commit();
        return !sale().receipt();
    }
    bool identify(const QString &phone)
    {
        sale().enterCard(phone);
        return sale().receipt() && !sale().receipt()->cardNumber.isEmpty();
    }

private:
    NoFace face;
    till::Settings settings;
    std::unique_ptr<till::Till> till;
};

} // namespace bench
