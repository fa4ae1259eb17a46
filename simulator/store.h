#pragma once

#include "simulator/statefile.h"

#include <QHash>
#include <QJsonArray>
#include <QJsonObject>
#include <QMap>
#include <QString>

#include <memory>

namespace simulator {

/// The collections of a store; phones are in normal form.
namespace kept {

inline constexpr QLatin1String customers{"customers"}; ///< By phone, as in the answers.
inline constexpr QLatin1String codes{"codes"};         ///< By phone, the one last sent, unused.
inline constexpr QLatin1String sms{"sms"};             ///< As they were sent.
inline constexpr QLatin1String letters{"letters"};     ///< As they were sent.
inline constexpr QLatin1String orders{"orders"};       ///< By their external identifier.

} // namespace kept

/// What the service holds: collections of JSON objects, in memory and, when wanted, in a file that
/// outlives a kill.
///
/// Changes are seen when they are committed, all of them or none.
class Store
{
public:
    /// Takes over what the file holds, unless it did so before; a new file begins with the preset
    /// customers, and so does a store without one. Returns what is wrong with the file, empty when
    /// it can be used.
    [[nodiscard]] QString open(const QString &path);

    /// Empty when there is none.
    QJsonObject get(QLatin1String collection, const QString &key) const;
    /// In the order in which they were first put.
    QJsonArray all(QLatin1String collection) const;
    /// How many changes there were.
    qint64 lastChange() const { return changeCount; }
    /// What became what it is after that change, of the latest of each collection, each with its
    /// "number"; and as "totals" how many each collection has.
    QJsonObject since(qint64 change) const;

    void put(QLatin1String collection, const QString &key, const QJsonObject &content);
    /// Puts it under a key of its own.
    void append(QLatin1String collection, const QJsonObject &content);
    void remove(QLatin1String collection, const QString &key);
    /// Back to the preset customers.
    void reset();
    /// Makes what was put and removed since the last call the state, in the file first. Returns
    /// what went wrong; then nothing of it is kept. Empty when all is well.
    [[nodiscard]] QString commit();

private:
    void apply(KeptObject object);

    QMap<QString, QHash<QString, KeptObject>> collections; ///< By name and key.
    QList<KeptObject> changes;                             ///< Not committed yet.
    qint64 lastNumber = 0;
    qint64 changeCount = 0;
    std::unique_ptr<StateFile> file;
};

} // namespace simulator
