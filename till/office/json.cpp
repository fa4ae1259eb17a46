#include "till/office/json.h"

#include <QJsonDocument>

#include <ostream>

namespace till {

void printJson(std::ostream &output, const QJsonObject &object)
{
    output << QJsonDocument(object).toJson().constData() << std::flush;
}

void printJson(std::ostream &output, const QJsonArray &array)
{
    output << QJsonDocument(array).toJson().constData() << std::flush;
}

} // namespace till
