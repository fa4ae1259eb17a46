#include "plugin/plugin.h"

#include "converter/converter.h"
#include "interface/interface.h"

#include <host/session.h>

#include <log4qt/logger.h>
#include <log4qt/logmanager.h>

namespace lmmindbox {

Plugin::Plugin()
    : converter(QSharedPointer<Converter>::create())
    , interface(QSharedPointer<Interface>::create())
    , logger(Log4Qt::LogManager::logger(QStringLiteral("lmmindbox")))
{
    systemType = 24;
    BasicLoyaltySystem::setOption(LoyaltySystemOption::IdentifiesByPhone, true);
}

Plugin::~Plugin() = default;

bool Plugin::init()
{
    logger->info(QStringLiteral("Инициализация системы лояльности"));
    constexpr int openReceiptContext = 6;
    addHandler({openReceiptContext, control::Action::editCustomer,
                [this](const control::Action &action) { return editCustomer(action); }, true});
    return BasicLoyaltySystem::init();
}

void Plugin::setProgress(const tr::Tr &text, int value) const
{
    Singleton<Session>::instance()->getProgressDisplay()->setProgress(text, value);
}

} // namespace lmmindbox
