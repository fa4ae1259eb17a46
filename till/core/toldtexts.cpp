#include "till/core/toldtexts.h"

#include <log4qt/logger.h>
#include <log4qt/logmanager.h>

#include <utility>

namespace till {

QString ToldTexts::take()
{
    return std::exchange(texts, {}).join(u'\n');
}

void ToldTexts::note(const QString &text)
{
    static const auto *const logger = Log4Qt::LogManager::logger(QStringLiteral("till.cashier"));
    if (!text.isEmpty())
        logger->info(QStringLiteral("%1"), text);
}

void ToldTexts::showError(const tr::Tr &text)
{
    keep(text);
    face.showError(text);
}

void ToldTexts::showMessage(const tr::Tr &text)
{
    keep(text);
    face.showMessage(text);
}

bool ToldTexts::showChoice(const tr::Tr &question, const tr::Tr &ok, const tr::Tr &cancel)
{
    note(question.toString());
    return face.showChoice(question, ok, cancel);
}

core::BasicDialog::Result ToldTexts::showInputText(const InputTextRequest &request)
{
    note(request.message.toString());
    return face.showInputText(request);
}

QVariantMap ToldTexts::showForm(const FormRequest &request)
{
    note(request.title.toString());
    return face.showForm(request);
}

void ToldTexts::showProgress(const ProgressRequest &request)
{
    face.showProgress(request);
}

void ToldTexts::hideProgress()
{
    face.hideProgress();
}

void ToldTexts::keep(const tr::Tr &text)
{
    texts.append(text.toString());
    note(texts.constLast());
}

} // namespace till
