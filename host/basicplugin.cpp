#include "host/basicplugin.h"

BasicPlugin::~BasicPlugin() = default;

bool BasicPlugin::init()
{
    return true;
}

EContext::Result BasicPlugin::handle(const control::Action &action) const
{
    for (const auto &handler : handlers) {
        if (!handler.enabled || handler.actionCode != action.getType())
            continue;
        const auto result = handler.handle(action);
        if (result != EContext::Result::Unhandled)
            return result;
    }
    return EContext::Result::Unhandled;
}

void BasicPlugin::fire(int event) const
{
    if (!triggersEnabled)
        return;
    for (const auto &trigger : triggers) {
        if (trigger.event == event)
            trigger.run();
    }
}
