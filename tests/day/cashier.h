#pragma once

#include "service.h"

#include <host/dialogpresenter.h>

#include <cstdio>

namespace day {

/// The cashier at the dialogs, who answers by chance.
class Cashier : public DialogPresenter
{
public:
    explicit Cashier(bool isTold)
        : isTold(isTold)
    {}

    void tell(const QString &text) const
    {
        if (isTold)
            std::puts(qPrintable(text));
    }

    void showError(const tr::Tr &text) override { tell(u"  error: "_s + text.getDefaultText()); }
    void showMessage(const tr::Tr &text) override
    {
        tell(u"  message: "_s + text.getDefaultText());
    }
    bool showChoice(const tr::Tr & /*question*/, const tr::Tr & /*ok*/,
                    const tr::Tr & /*cancel*/) override
    {
        return !disk.isDying() && random.below(5) > 0;
    }
    core::BasicDialog::Result showInputText(const InputTextRequest & /*request*/) override
    {
        if (disk.isDying() || random.below(8) == 0)
            return {};
        return core::BasicDialog::Result(random.below(4) == 0 ? u"0000"_s : u"1234"_s);
    }
    QVariantMap showForm(const FormRequest &request) override
    {
        if (disk.isDying() || random.below(8) == 0)
            return {};
        return {{u"name"_s, u"Anna"_s},
                {u"sex"_s, 0},
                {u"email"_s, u"a@b.example"_s},
                {u"phone"_s, request.fields.first().value}};
    }
    void showProgress(const ProgressRequest & /*request*/) override {}
    void hideProgress() override {}

    Random random; ///< For every choice of the step.

private:
    const bool isTold;
};

} // namespace day
