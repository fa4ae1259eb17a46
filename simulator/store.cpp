#include "simulator/store.h"

#include "simulator/presets.h"

#include <algorithm>
#include <span>
#include <utility>
#include <vector>

namespace simulator {

using namespace Qt::StringLiterals;

namespace {

/// In the order in which they were first put.
std::vector<const KeptObject *> inOrder(const QHash<QString, KeptObject> &objects)
{
    std::vector<const KeptObject *> ordered;
    for (const auto &object : objects)
        ordered.push_back(&object);
    std::ranges::sort(ordered, {}, &KeptObject::number);
    return ordered;
}

} // namespace

QString Store::open(const QString &path)
{
    if (changeCount > 0)
        return {};
    if (!path.isEmpty()) {
        auto opened = std::make_unique<StateFile>();
        QList<KeptObject> found;
        if (auto error = opened->open(path, found); !error.isEmpty())
            return error;
        file = std::move(opened);
        for (const auto &object : found)
            apply(object);
        if (!found.isEmpty())
            return {};
    }
    reset();
    return commit();
}

QJsonObject Store::get(QLatin1String collection, const QString &key) const
{
    return collections.value(collection).value(key).content;
}

QJsonArray Store::all(QLatin1String collection) const
{
    const auto objects = collections.value(collection);
    QJsonArray contents;
    for (const auto *const object : inOrder(objects))
        contents.append(object->content);
    return contents;
}

QJsonObject Store::since(qint64 change) const
{
    constexpr std::size_t mostShown = 200; // Of each collection, on a page.
    QJsonObject result;
    QJsonObject totals;
    for (auto collection = collections.begin(); collection != collections.end(); ++collection) {
        const auto ordered = inOrder(*collection);
        QJsonArray newer;
        for (const auto *const object :
             std::span(ordered).last(std::min(mostShown, ordered.size()))) {
            auto content = object->content;
            content.insert("number"_L1, object->number);
            if (object->change > change)
                newer.append(content);
        }
        if (!newer.isEmpty())
            result.insert(collection.key(), newer);
        totals.insert(collection.key(), collection->size());
    }
    result.insert("totals"_L1, totals);
    return result;
}

void Store::put(QLatin1String collection, const QString &key, const QJsonObject &content)
{
    const auto known = collections.value(collection).value(key).number;
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
    if (const auto known = collections.value(collection).value(key).number; known > 0)
        changes.append({.number = known, .collection = collection, .key = key});
}

void Store::reset()
{
    for (const auto &objects : std::as_const(collections)) {
        for (auto object : objects) {
            object.content = {};
            changes.append(object);
        }
    }
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
    if (file && !made.isEmpty()) {
        if (auto error = file->write(made); !error.isEmpty())
            return error;
    }
    for (const auto &object : made)
        apply(object);
    return {};
}

void Store::apply(KeptObject object)
{
    object.change = ++changeCount;
    lastNumber = std::max(lastNumber, object.number);
    auto &objects = collections[object.collection];
    if (object.content.isEmpty())
        objects.remove(object.key);
    else
        objects.insert(object.key, object);
}

} // namespace simulator
