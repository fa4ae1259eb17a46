#include "simulator/envelope.h"

#include <httplib.h>

namespace simulator {

using namespace Qt::StringLiterals;

namespace {

std::optional<Answer> checkQuery(const QUrlQuery &query, const QString &endpoint)
{
    QStringList names;
    for (const auto &[name, value] : query.queryItems(QUrl::FullyDecoded)) {
        if (name != "endpointId"_L1 && name != "operation"_L1 && name != "transactionId"_L1)
            return protocolError(400, u"Unknown query item '%1'"_s.arg(name));
        if (names.contains(name))
            return protocolError(400, u"Query item '%1' stands twice"_s.arg(name));
        if (value.isEmpty())
            return protocolError(400, u"Query item '%1' is empty"_s.arg(name));
        names.append(name);
    }
    for (const auto name : {"endpointId"_L1, "operation"_L1}) {
        if (!names.contains(name))
            return protocolError(400, u"Query item '%1' is missing"_s.arg(name));
    }
    if (const auto sent = query.queryItemValue(u"endpointId"_s, QUrl::FullyDecoded);
        sent != endpoint)
        return protocolError(403, u"Unknown endpoint '%1'"_s.arg(sent));
    return {};
}

bool standsOnce(const httplib::Request &request, const char *header, const std::string &value)
{
    return request.get_header_value_count(header) == 1 && request.get_header_value(header) == value;
}

} // namespace

QUrlQuery readQuery(const std::string &target)
{
    auto query = QString::fromLatin1(target.data(), qsizetype(target.size())).section(u'?', 1);
    return QUrlQuery(query.replace(u'+', "%20"_L1));
}

std::optional<Answer> checkEnvelope(const httplib::Request &request, const QUrlQuery &query,
                                    const Options &options)
{
    if (auto refused = checkQuery(query, options.endpoint))
        return refused;
    for (const auto &[header, value] :
         {std::pair("Content-Type", "application/json; charset=utf-8"),
          std::pair("Accept", "application/json")}) {
        if (!standsOnce(request, header, value))
            return protocolError(400, u"Header '%1' must stand once with the value '%2'"_s.arg(
                                          QLatin1String(header), QLatin1String(value)));
    }
    // The expected value is a secret and what was sent may be one.
    const auto key = u"Mindbox secretKey=\"%1\""_s.arg(options.secretKey);
    if (!standsOnce(request, "Authorization", key.toStdString()))
        return protocolError(401, u"The secret key is missing or wrong"_s);
    return {};
}

} // namespace simulator
