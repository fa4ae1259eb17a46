#pragma once

#include "host/actionhandler.h"
#include "host/export.h"
#include "host/hostobject.h"

#include <QList>
#include <QSet>
#include <QString>
#include <QtPlugin>

#include <functional>

/// An event at the till that a plugin wants to hear of.
struct Trigger
{
    int event = 0;
    std::function<void()> run;
};

/// Base of everything the till loads: action handlers, triggers and features.
class HOST_EXPORT BasicPlugin : public HostObject
{
public:
    ~BasicPlugin() override;

    /// Called once, when the till initialises its plugins. \return Whether the plugin is usable.
    virtual bool init();
    /// Called once, before the till lets go of the plugin.
    virtual void deinit() {}

    /// Whether the plugin has all of these features; true for an empty list.
    virtual bool isFeatureMatched(const QSet<QString> &wanted) const
    {
        return features.contains(wanted);
    }
    /// Adds a feature of the plugin, for hosts that choose plugins by feature.
    void setFeature(const QString &feature) { features.insert(feature); }

    /// Adds a handler for an action. An action may have several handlers.
    void addHandler(const ActionHandler &handler) { handlers.append(handler); }
    const QList<ActionHandler> &getHandlers() const { return handlers; }
    /// Runs the action's enabled handlers in the order of addition until one answers other than
    /// `Unhandled`. Returns `Unhandled` when none does.
    EContext::Result handle(const control::Action &action) const;

    /// Adds a trigger for an event.
    void addTrigger(const Trigger &trigger) { triggers.append(trigger); }
    /// Disables all triggers, so that `fire` runs none; they are enabled at first.
    void disableTriggers() { triggersEnabled = false; }
    void enableTriggers() { triggersEnabled = true; }
    /// Runs the triggers for an event in the order of addition, unless they are disabled.
    void fire(int event) const;

private:
    QList<ActionHandler> handlers;
    QList<Trigger> triggers;
    QSet<QString> features;
    bool triggersEnabled = true;
};

Q_DECLARE_INTERFACE(BasicPlugin, "su.vantor.AbstractPlugin")
