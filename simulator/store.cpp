#include "simulator/store.h"

#include "simulator/presets.h"

#include <algorithm>
#include <utility>

namespace simulator {

using namespace Qt::StringLiterals;

namespace {

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
    change(known > 0 ? known : ++lastNumber, collection, key, content);
}

void Store::append(QLatin1String collection, const QJsonObject &content)
{
    ++lastNumber;
    change(lastNumber, collection, QString::number(lastNumber), content);
}

void Store::remove(QLatin1String collection, const QString &key)
{
    if (const auto known = numberOf(collection, key); known > 0)
        change(known, collection, key, {});
}

void Store::reset()
{
    for (const auto &[number, object] : objects)
        changes.append({number, object.collection, object.key, {}});
    for (const auto &preset : presets()) {
        if (!preset.customer.isEmpty())
            change(++lastNumber, kept::customers, preset.mobilePhone, preset.customer);
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

void Store::change(qint64 number, QLatin1String collection, const QString &key,
                   const QJsonObject &content)
{
    changes.append({number, collection, key, content});
}

void Store::apply(const KeptObject &object)
{
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
