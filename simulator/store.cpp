#include "simulator/store.h"

#include "simulator/presets.h"

#include <algorithm>
#include <utility>

namespace simulator {

using namespace Qt::StringLiterals;

namespace {

/// Of each collection, on a page.
constexpr int mostShown = 200;

QString nameOf(const QString &collection, const QString &key)
{
    return collection + u'/' + key;
}

} // namespace

Store::Store()
{
    reset();
    for (const auto &object : std::exchange(changes, {}))
        apply(object);
}

QString Store::open(const QString &path)
{
    auto opened = std::make_unique<StateFile>();
    QList<KeptObject> found;
    if (auto error = opened->open(path, found); !error.isEmpty())
        return error;
    file = std::move(opened);
    for (const auto &[number, object] : objects)
        changes.append(object);
    if (found.isEmpty())
        return commit();
    for (auto &object : changes)
        object.content = {};
    for (const auto &object : std::exchange(changes, {}) + found)
        apply(object);
    return {};
}

QJsonObject Store::get(QLatin1String collection, const QString &key) const
{
    const auto object = objects.find(numberOf(collection, key));
    return object == objects.end() ? QJsonObject() : object->second.content;
}

QJsonArray Store::all(QLatin1String collection) const
{
    QJsonArray contents;
    for (const auto &[number, object] : objects) {
        if (object.collection == collection)
            contents.append(object.content);
    }
    return contents;
}

QJsonObject Store::since(qint64 change) const
{
    std::map<QString, int> totals;
    for (const auto &[number, object] : objects)
        ++totals[object.collection];
    std::map<QString, int> passed;
    std::map<QString, QJsonArray> newer;
    for (const auto &[number, object] : objects) {
        const bool isLate = ++passed[object.collection] > totals[object.collection] - mostShown;
        if (!isLate || object.change <= change)
            continue;
        auto content = object.content;
        content.insert("number"_L1, number);
        newer[object.collection].append(content);
    }
    QJsonObject result;
    for (const auto &[collection, contents] : newer)
        result.insert(collection, contents);
    QJsonObject counts;
    for (const auto &[collection, count] : totals)
        counts.insert(collection, count);
    result.insert("totals"_L1, counts);
    return result;
}

bool Store::knowsEmail(const QString &email) const
{
    return std::any_of(objects.begin(), objects.end(), [&email](const auto &numbered) {
        return numbered.second.collection == kept::customers &&
               numbered.second.content.value("email"_L1) == email;
    });
}

void Store::put(QLatin1String collection, const QString &key, const QJsonObject &content)
{
    const auto known = numberOf(collection, key);
    changes.append({.number = known > 0 ? known : ++lastNumber,
                    .collection = collection,
                    .key = key,
                    .content = content});
}

void Store::append(QLatin1String collection, const QJsonObject &content)
{
    put(collection, QString::number(lastNumber + 1), content);
}

void Store::remove(QLatin1String collection, const QString &key)
{
    if (const auto known = numberOf(collection, key); known > 0)
        changes.append({.number = known, .collection = collection, .key = key});
}

void Store::reset()
{
    for (const auto &[number, object] : objects)
        changes.append({.number = number, .collection = object.collection, .key = object.key});
    for (const auto &preset : presets()) {
        if (!preset.customer.isEmpty())
            changes.append({.number = ++lastNumber,
                            .collection = kept::customers,
                            .key = preset.mobilePhone,
                            .content = preset.customer});
    }
}

QString Store::commit()
{
    const auto made = std::exchange(changes, {});
    if (auto error = file ? file->write(made) : QString(); !error.isEmpty())
        return error;
    for (const auto &object : made)
        apply(object);
    return {};
}

qint64 Store::numberOf(QLatin1String collection, const QString &key) const
{
    return numbers.value(nameOf(collection, key));
}

void Store::apply(KeptObject object)
{
    object.change = ++changeCount;
    const auto name = nameOf(object.collection, object.key);
    lastNumber = std::max(lastNumber, object.number);
    if (object.content.isEmpty()) {
        objects.erase(object.number);
        numbers.remove(name);
    } else {
        objects.insert_or_assign(object.number, object);
        numbers.insert(name, object.number);
    }
}

} // namespace simulator
