#pragma once

#include <QPluginLoader>
#include <QString>

#include <tl/expected.hpp>

class BasicLoyaltySystem;

namespace till {

/// The loyalty plugin, loaded from its module.
///
/// The module stays loaded until the process ends, because its registered loggers and types refer
/// to it.
class LoyaltyPlugin
{
public:
    LoyaltyPlugin() = default;
    /// Deregisters and deinitialises the plugin.
    ~LoyaltyPlugin();
    Q_DISABLE_COPY_MOVE(LoyaltyPlugin)

    /// The configured file; for an empty text "lmmindbox.so" beside the program, in "../lib" or in
    /// the installation.
    static QString filePath(const QString &configured);

    /// Loads, initialises and registers the plugin. The settings must be loaded before.
    /// \return Why it cannot be used.
    [[nodiscard]] tl::expected<void, QString> load(const QString &file);

    /// Only after a successful `load`.
    BasicLoyaltySystem &getSystem() const { return *system; }
    /// The module with its version, Qt's, its interface and its class, without words of a language.
    QString description() const;

private:
    QPluginLoader loader;
    BasicLoyaltySystem *system = nullptr;
};

} // namespace till
