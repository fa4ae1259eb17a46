#include "host/dialog.h"

#include "host/dialogpresenter.h"

template class MockFactory<Dialog>;

namespace {

DialogPresenter *currentPresenter = nullptr;

class PresentedProgress : public SimpleProgress
{
public:
    explicit PresentedProgress(DialogPresenter *presenter)
        : presenter(presenter)
    {}
    ~PresentedProgress() override
    {
        // The till may have taken its presenter away while the message was up.
        if (currentPresenter == presenter)
            presenter->hideProgress();
    }
    Q_DISABLE_COPY_MOVE(PresentedProgress)

private:
    DialogPresenter *presenter;
};

} // namespace

void Dialog::setPresenter(DialogPresenter *presenter)
{
    currentPresenter = presenter;
}

void Dialog::showError(const tr::Tr &text, int /*code*/, int /*flags*/)
{
    if (currentPresenter)
        currentPresenter->showError(text);
}

void Dialog::showMessage(const tr::Tr &text, int /*code*/, int /*flags*/)
{
    if (currentPresenter)
        currentPresenter->showMessage(text);
}

bool Dialog::showChoice(const tr::Tr &question, int /*kind*/, const tr::Tr &ok,
                        const tr::Tr &cancel, int /*defaultAnswer*/)
{
    return currentPresenter && currentPresenter->showChoice(question, ok, cancel);
}

core::BasicDialog::Result Dialog::showInputText(const InputTextRequest &request)
{
    return currentPresenter ? currentPresenter->showInputText(request)
                            : core::BasicDialog::Result();
}

QVariantMap Dialog::showForm(const FormRequest &request)
{
    return currentPresenter ? currentPresenter->showForm(request) : QVariantMap();
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
