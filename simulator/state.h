#pragma once

#include <QFile>
#include <QHash>
#include <QJsonArray>
#include <QJsonObject>
#include <QMap>
#include <QString>

#include <tl/expected.hpp>

namespace simulator {

/// The collections of a state; phones are in normal form.
namespace kept {

inline constexpr QLatin1String customers{"customers"}; ///< By phone, in the form of the answers.
inline constexpr QLatin1String codes{"codes"};         ///< By phone: the last one sent, unused.
inline constexpr QLatin1String letters{"letters"};     ///< By e-mail address: the last one sent.
inline constexpr QLatin1String orders{"orders"};       ///< By their external identifier.
inline constexpr QLatin1String exchanges{"exchanges"}; ///< The latest 1,000; not in the file.

} // namespace kept

/// A new content of an object; an empty one removes it.
struct Change
{
    QString collection;
    QString key;
    QJsonObject content;
};

/// The service's state: collections of JSON objects, in memory and optionally in a file.
///
/// A commit makes the changes visible, all or none. The file survives kills: each of its lines is
/// JSON, the changes of one commit. Errors name the file, and the line at fault.
class State
{
public:
    using Done = tl::expected<void, QString>;

    /// Reads the file, unless it did so before. A new file, or a state without one, begins with the
    /// preset customers. Refuses a file that another simulator uses or that has a foreign line, and
    /// leaves it as it is. A last line without an end was never accepted: it is reported on
    /// standard error and dropped.
    [[nodiscard]] Done open(const QString &path);

    /// Empty when there is none.
    QJsonObject get(QLatin1String collection, const QString &key) const;
    /// In the order of their last change.
    QJsonArray all(QLatin1String collection) const;
    /// The objects changed after `change`, by collection: at most the latest 200 of each, in the
    /// order of change, each with its "key". "totals" are the collections' sizes. "reset" tells to
    /// forget what came before: at first, with a `change` of -1, and when an object is gone. Sets
    /// `change` to the last change; empty when nothing has changed.
    QJsonObject since(qint64 &change) const;

    void put(QLatin1String collection, const QString &key, const QJsonObject &content);
    void remove(QLatin1String collection, const QString &key) { put(collection, key, {}); }
    /// Applies what was put and removed since the last call, in the file first.
    [[nodiscard]] Done commit();
    /// Lets every reader of the changes begin anew.
    void beginAnew() { beginning = ++lastChange; }
    /// Adds an exchange to the journal; needs no commit.
    void note(const QJsonObject &exchange);
    /// Back to the preset customers and an empty journal; on failure everything stays.
    [[nodiscard]] Done reset();

private:
    struct Collection
    {
        QMap<qint64, Change> objects;   ///< Each object's last one, by its number.
        QHash<QString, qint64> numbers; ///< By key.
    };

    /// Applies the file's changes.
    [[nodiscard]] Done read();
    /// Replaces the file's content with a line for each of these changes.
    [[nodiscard]] Done replace(const QList<Change> &changes);
    tl::unexpected<QString> wrong(const QString &reason) const;
    void apply(const Change &change);

    QMap<QString, Collection> collections;
    QList<Change> pending;
    qint64 lastChange = 0;
    qint64 beginning = 0; ///< The change since which nothing was forgotten.
    QFile lock;
    QFile file; ///< Without a name when the state is in memory only.
};

} // namespace simulator
