#pragma once

#include "host/actionhandler.h"
#include "host/export.h"
#include "host/hostobject.h"

#include <QList>
#include <QSet>
#include <QString>
#include <QtPlugin>

#include <functional>

/// Something that happens at the till and that a plugin wants to hear of.
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

    /// Whether every feature named is one of the plugin's; true for none.
    virtual bool isFeatureMatched(const QSet<QString> &wanted) const
    {
        return features.contains(wanted);
    }
    /// Names one more thing that the plugin can do; for hosts that choose plugins by it.
    void setFeature(const QString &feature) { features.insert(feature); }

    /// Has the plugin serve an action. Several handlers may serve the same one.
    void addHandler(const ActionHandler &handler) { handlers.append(handler); }
    const QList<ActionHandler> &getHandlers() const { return handlers; }
    /// Runs the enabled handlers for the action in the order they were added, until one does not
    /// answer `Unhandled`. `Unhandled` when there is none.
    EContext::Result handle(const control::Action &action) const;

    /// Has the plugin hear of an event.
    void addTrigger(const Trigger &trigger) { triggers.append(trigger); }
    /// Keeps all triggers, which are enabled at first, from being run by `fire`.
    void disableTriggers() { triggersEnabled = false; }
    void enableTriggers() { triggersEnabled = true; }
    /// Runs the triggers for an event, in order, unless they are disabled.
    void fire(int event) const;

private:
    QList<ActionHandler> handlers;
    QList<Trigger> triggers;
    QSet<QString> features;
    bool triggersEnabled = true;
};

Q_DECLARE_INTERFACE(BasicPlugin, "su.vantor.AbstractPlugin")
