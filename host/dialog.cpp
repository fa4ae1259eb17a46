#include "host/dialog.h"

#include "host/dialogpresenter.h"

#include <utility>

template class MockFactory<Dialog>;

namespace {

DialogPresenter *currentPresenter = nullptr;
Dialog::Listener currentListener;

/// The presenter of a dialog with that text; null for none.
DialogPresenter *presenterOf(const tr::Tr &text, bool isNotice)
{
    if (currentPresenter && currentListener)
        currentListener(text.toString(), isNotice);
    return currentPresenter;
}

class PresentedProgress : public SimpleProgress
{
public:
    explicit PresentedProgress(DialogPresenter *presenter)
        : presenter(presenter)
    {}
    ~PresentedProgress() override
    {
        // The till may have removed its presenter while the message was shown.
        if (currentPresenter == presenter)
            presenter->hideProgress();
    }
    Q_DISABLE_COPY_MOVE(PresentedProgress)

private:
    DialogPresenter *presenter;
};

} // namespace

void Dialog::setPresenter(DialogPresenter *presenter, Listener listener)
{
    currentPresenter = presenter;
    currentListener = std::move(listener);
}

void Dialog::showError(const tr::Tr &text, int /*code*/, int /*flags*/)
{
    if (auto *const presenter = presenterOf(text, true))
        presenter->showError(text);
}

void Dialog::showMessage(const tr::Tr &text, int /*code*/, int /*flags*/)
{
    if (auto *const presenter = presenterOf(text, true))
        presenter->showMessage(text);
}

bool Dialog::showChoice(const tr::Tr &question, int /*kind*/, const tr::Tr &ok,
                        const tr::Tr &cancel, int /*defaultAnswer*/)
{
    auto *const presenter = presenterOf(question, false);
    return presenter && presenter->showChoice(question, ok, cancel);
}

core::BasicDialog::Result Dialog::showInputText(const InputTextRequest &request)
{
    auto *const presenter = presenterOf(request.message, false);
    return presenter ? presenter->showInputText(request) : core::BasicDialog::Result();
}

QVariantMap Dialog::showForm(const FormRequest &request)
{
    auto *const presenter = presenterOf(request.title, false);
    return presenter ? presenter->showForm(request) : QVariantMap();
}

QSharedPointer<SimpleProgress> Dialog::showProgress(const ProgressRequest &request)
{
    if (!currentPresenter)
        return QSharedPointer<SimpleProgress>::create();
    currentPresenter->showProgress(request);
    return QSharedPointer<PresentedProgress>::create(currentPresenter);
}

QSharedPointer<SimpleProgress> Dialog::showProgress(const tr::Tr &text, const tr::Tr &details)
{
    ProgressRequest request;
    request.title = details;
    request.message = text;
    return showProgress(request);
}
