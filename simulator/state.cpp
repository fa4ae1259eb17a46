#include "simulator/state.h"

#include "simulator/presets.h"

#include <QJsonDocument>
#include <QSaveFile>

#include <sys/file.h>
#include <unistd.h>

#include <cstdio>
#include <utility>

namespace simulator {

using namespace Qt::StringLiterals;

namespace {

const QByteArray firstLine = R"({"simulator":"state","version":1})"
                             "\n";
constexpr auto ownerOnly = QFileDevice::ReadOwner | QFileDevice::WriteOwner;
constexpr qsizetype mostExchanges = 1000;
constexpr qsizetype mostShown = 200; // Objects of a collection on a page.

QByteArray line(const QList<Change> &changes)
{
    QJsonArray array;
    for (const auto &[collection, key, content] : changes)
        array.append(QJsonArray{collection, key, content});
    return QJsonDocument(array).toJson(QJsonDocument::Compact) + '\n';
}

/// Empty when the line cannot be read.
QList<Change> readLine(const QByteArray &line)
{
    QList<Change> changes;
    for (const auto change : QJsonDocument::fromJson(line).array()) {
        if (!change[0].isString() || !change[1].isString() || !change[2].isObject())
            return {};
        changes.append({change[0].toString(), change[1].toString(), change[2].toObject()});
    }
    return changes;
}

} // namespace

State::Done State::open(const QString &path)
{
    if (lastChange > 0)
        return {};
    if (path.isEmpty())
        return reset();
    file.setFileName(path);
    lock.setFileName(path + u".lock"_s);
    if (!lock.open(QIODevice::WriteOnly, ownerOnly))
        return wrong(lock.errorString());
    if (::flock(lock.handle(), LOCK_EX | LOCK_NB) != 0)
        return wrong(u"another simulator uses it"_s);
    if (file.exists()) {
        if (auto done = read(); !done)
            return done;
    }
    QList<Change> left;
    for (const auto &collection : std::as_const(collections))
        left += collection.objects.values();
    return left.isEmpty() ? reset() : replace(left);
}

State::Done State::read()
{
    if (!file.open(QIODevice::ReadOnly))
        return wrong(file.errorString());
    QList<Change> found;
    for (int number = 1; !file.atEnd(); ++number) {
        const auto text = file.readLine();
        const auto changes = readLine(text);
        if (number > 1 && !text.endsWith('\n'))
            std::fprintf(stderr,
                         "simulator: state %s: line %d was not written to its end, so that it was "
                         "never answered: left out\n",
                         qPrintable(file.fileName()), number);
        else if (number == 1 ? text != firstLine : changes.isEmpty())
            return wrong(u"line %1: this is no line of a simulator's state"_s.arg(number));
        else
            found += changes;
    }
    for (const auto &change : found)
        apply(change);
    return {};
}

State::Done State::replace(const QList<Change> &changes)
{
    auto lines = firstLine;
    for (const auto &change : changes)
        lines += line({change});
    QSaveFile fresh(file.fileName());
    // Qt's commit is silent about what it cannot flush.
    if (!fresh.open(QIODevice::WriteOnly) || !fresh.setPermissions(ownerOnly) ||
        fresh.write(lines) != lines.size() || !fresh.flush() || !fresh.commit())
        return wrong(fresh.errorString());
    file.close();
    if (!file.open(QIODevice::Append | QIODevice::Unbuffered))
        return wrong(file.errorString());
    return {};
}

tl::unexpected<QString> State::wrong(const QString &reason) const
{
    return tl::unexpected(u"state %1: %2"_s.arg(file.fileName(), reason));
}

QJsonObject State::get(QLatin1String collection, const QString &key) const
{
    const auto found = collections.value(collection);
    return found.objects.value(found.numbers.value(key)).content;
}

QJsonArray State::all(QLatin1String collection) const
{
    QJsonArray contents;
    for (const auto found = collections.value(collection); const auto &object : found.objects)
        contents.append(object.content);
    return contents;
}

QJsonObject State::since(qint64 &change) const
{
    auto known = std::exchange(change, lastChange);
    if (known == lastChange)
        return {};
    QJsonObject news;
    if (known < beginning) {
        known = 0;
        news.insert("reset"_L1, true);
    }
    QJsonObject totals;
    for (auto it = collections.cbegin(); it != collections.cend(); ++it) {
        const auto &objects = it->objects;
        QJsonArray latest;
        for (auto object = objects.cend();
             object != objects.upperBound(known) && latest.size() < mostShown;) {
            --object;
            latest.prepend(merged(object->content, {{"key"_L1, object->key}}));
        }
        news.insert(it.key(), latest);
        totals.insert(it.key(), objects.size());
    }
    news.insert("totals"_L1, totals);
    return news;
}

void State::put(QLatin1String collection, const QString &key, const QJsonObject &content)
{
    pending.append({collection, key, content});
}

State::Done State::commit()
{
    const auto made = std::exchange(pending, {});
    const auto added = line(made);
    const auto size = file.size();
    if (file.isOpen() && !made.isEmpty() &&
        (file.write(added) != added.size() || ::fdatasync(file.handle()) != 0)) {
        auto refused = wrong(qt_error_string());
        file.resize(size);
        return refused;
    }
    for (const auto &change : made)
        apply(change);
    return {};
}

void State::note(const QJsonObject &exchange)
{
    apply({kept::exchanges, QString::number(lastChange), exchange});
    if (const auto &journal = collections[kept::exchanges].objects; journal.size() > mostExchanges)
        apply({kept::exchanges, journal.first().key, {}});
}

State::Done State::reset()
{
    QList<Change> begun;
    for (const auto customer : ownJson(u"presets"_s)["customers"_L1].toArray())
        begun.append({kept::customers, customer["mobilePhone"_L1].toString(), customer.toObject()});
    if (!file.fileName().isEmpty()) {
        if (auto written = replace(begun); !written)
            return written;
    }
    collections.clear();
    for (const auto &change : begun)
        apply(change);
    beginAnew();
    return {};
}

void State::apply(const Change &change)
{
    auto &[objects, numbers] = collections[change.collection];
    objects.remove(numbers.take(change.key));
    if (change.content.isEmpty())
        return;
    numbers.insert(change.key, ++lastChange);
    objects.insert(lastChange, change);
}

} // namespace simulator
