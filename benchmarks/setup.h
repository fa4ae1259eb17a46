#pragma once

#include "benchmarks/bareexchange.h"

#include <host/config.h>

#include <QJsonObject>
#include <QPluginLoader>
#include <QProcess>
#include <QSharedPointer>
#include <QString>
#include <QTemporaryDir>

class AbstractDocument;
class BasicLoyaltySystem;

namespace bench {

/// What the benchmarks share: the simulator in a process of its own, the settings that lead to it,
/// the log as a till writes it, and a place for files.
class Setup
{
public:
    /// \param quick Whether the long benchmarks are scaled down to seconds.
    explicit Setup(bool quick);
    ~Setup();
    Q_DISABLE_COPY_MOVE(Setup)

    /// Why nothing can be measured; empty when it can.
    QString getError() const { return error; }
    bool isQuick() const { return quick; }

    /// A new file's name, on the disk that the benchmarks run on.
    QString newFile() const;
    /// A new settings file of a till with these settings.
    QString newSettingsFile() const;
    /// What the simulator holds and has counted.
    QJsonObject dump();
    /// How many orders the simulator holds whose lines have got their status.
    int countSettledOrders();
    /// Has the simulator forget everything.
    void resetSimulator();
    /// Has the simulator answer so much later until it is reset.
    void delayAnswers(int milliseconds);

private:
    bool quick;
    QString error;
    QTemporaryDir directory;
    QProcess simulator;
    QByteArray simulatorUrl;
};

/// While it lives, what is set up anew looks for the service elsewhere. Then the settings are as
/// they were before.
class ServiceElsewhere
{
public:
    /// By itself where nothing listens, the port for Internet-wide multiplexing.
    explicit ServiceElsewhere(int port = 1);
    ~ServiceElsewhere();
    Q_DISABLE_COPY_MOVE(ServiceElsewhere)

private:
    const Config before;
};

/// The built plugin, loaded as a till loads it; made anew each time, with the settings of that
/// time.
class LoadedPlugin
{
public:
    explicit LoadedPlugin(const QString &file = QStringLiteral(PLUGIN_FILE));
    ~LoadedPlugin();
    Q_DISABLE_COPY_MOVE(LoadedPlugin)

    /// Null when the file holds no loyalty system.
    BasicLoyaltySystem *system() const { return loyaltySystem; }
    /// Makes a receipt the one at hand; null for none.
    void attach(const QSharedPointer<AbstractDocument> &document) const;
    /// Puts a card with the phone on the receipt at hand and identifies its holder.
    bool identify(const QString &phone) const;

private:
    QPluginLoader loader;
    QObject *instance;
    BasicLoyaltySystem *loyaltySystem;
};

/// A sale of so many positions, with promotions: each has a discount of a till campaign, every
/// third one a rounding of the change as well.
QSharedPointer<AbstractDocument> makeReceipt(int lines, int number);

/// A customer with phone, e-mail address and name on record.
inline const auto confirmedPhone = QStringLiteral("79160000001");
/// A customer who has no e-mail address.
inline const auto phoneWithoutEmail = QStringLiteral("79160000003");

/// Loads a plugin, prints the seconds until its instance stood and returns the exit code: a plugin
/// is loaded but once in a process.
int loadOnce(const QString &file);

/// An answer about a customer that takes at least so many bytes, the way services grow them: with
/// more records of the same kind.
QByteArray answerOfSize(qsizetype size);

/// Calls something a hundred times for valgrind to count: "lookUp", its "bareExchange",
/// "payload" of 100 lines, "answer" of 1 KB, "delivery" of a message, "commit" while the service is
/// down or "identification" at the till. \return Whether it is one of these.
bool count(const QString &what, Setup &setup);

void registerExchanges(Setup &setup);
void registerPayloads(Setup &setup);
void registerAnswers();
void registerMasks();
void registerQueue(Setup &setup);
void registerSale(Setup &setup);
void registerSyncs(Setup &setup);
void registerProcess(Setup &setup);

} // namespace bench
