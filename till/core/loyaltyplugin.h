#pragma once

#include <QPluginLoader>
#include <QString>

#include <optional>

class BasicLoyaltySystem;

namespace till {

/// The loyalty plugin in its module.
///
/// The module stays loaded until the process ends: the loggers and types that it has registered
/// refer to it.
class LoyaltyPlugin
{
public:
    LoyaltyPlugin() = default;
    /// Takes the plugin out of service.
    ~LoyaltyPlugin();
    Q_DISABLE_COPY_MOVE(LoyaltyPlugin)

    /// The file given, else "lmmindbox.so" beside the program, in its "../lib" or where an
    /// installation has it.
    static QString filePath(const QString &configured);

    /// Loads, initialises and registers the plugin. The settings and the queue's file must be set.
    /// \return Why it cannot be used, nothing when it can.
    [[nodiscard]] std::optional<QString> load(const QString &file);

    /// Not before a successful `load`.
    BasicLoyaltySystem &getSystem() const { return *system; }
    /// A few lines on what is loaded.
    QString description() const;

private:
    QPluginLoader loader;
    BasicLoyaltySystem *system = nullptr;
};

} // namespace till
