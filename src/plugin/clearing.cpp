#include "plugin/plugin.h"

namespace lmmindbox {

void Plugin::clearLoyaltyData()
{
    BasicLoyaltySystem::clearLoyaltyData();
    customer = {};
    codeSent = false;
    confirmedEmails.clear();
}

} // namespace lmmindbox
