#include "host/basicplugin.h"

#include <algorithm>

BasicPlugin::~BasicPlugin() = default;

bool BasicPlugin::init()
{
    return true;
}

void BasicPlugin::deinit() {}

bool BasicPlugin::isFeatureMatched(const QSet<QString> &wanted) const
{
    return features.contains(wanted);
}

void BasicPlugin::setFeature(const QString &feature)
{
    features.insert(feature);
}

void BasicPlugin::addHandler(const ActionHandler &handler)
{
    handlers.append(handler);
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

void BasicPlugin::addTrigger(const Trigger &trigger)
{
    triggers.append(trigger);
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
