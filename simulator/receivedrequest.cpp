#include "simulator/receivedrequest.h"

#include <QUrlQuery>

#include <algorithm>

namespace simulator {

using namespace Qt::StringLiterals;

void ReceivedRequest::readQuery()
{
    const auto mark = target.indexOf('?');
    if (mark < 0)
        return;
    auto encoded = QString::fromLatin1(target.mid(mark + 1));
    encoded.replace(QLatin1Char('+'), QLatin1String("%20"));
    query = QUrlQuery(encoded).queryItems(QUrl::FullyDecoded);
}

QString ReceivedRequest::queryItem(QLatin1String name) const
{
    const auto item = std::find_if(query.begin(), query.end(),
                                   [name](const auto &pair) { return pair.first == name; });
    return item == query.end() ? QString() : item->second;
}

namespace {

std::optional<Answer> checkQuery(const ReceivedRequest &request, const QString &endpoint)
{
    QStringList names;
    for (const auto &[name, value] : request.query) {
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
    if (const auto sent = request.queryItem("endpointId"_L1); sent != endpoint)
        return protocolError(403, u"Unknown endpoint '%1'"_s.arg(sent));
    return {};
}

bool standsOnce(const ReceivedRequest &request, const QByteArray &header, const QByteArray &value)
{
    return request.headers.values(header) == QList{value};
}

} // namespace

std::optional<Answer> checkEnvelope(const ReceivedRequest &request, const Options &options)
{
    if (auto refused = checkQuery(request, options.endpoint))
        return refused;
    if (!standsOnce(request, "content-type", "application/json; charset=utf-8"))
        return protocolError(400, u"Header 'Content-Type' must stand once with the value "
                                  "'application/json; charset=utf-8'"_s);
    if (!standsOnce(request, "accept", "application/json"))
        return protocolError(400, u"Header 'Accept' must stand once with the value "
                                  "'application/json'"_s);
    // The expected value is a secret and what was sent may be one.
    if (!standsOnce(request, "authorization",
                    u"Mindbox secretKey=\"%1\""_s.arg(options.secretKey).toUtf8()))
        return protocolError(401, u"The secret key is missing or wrong"_s);
    return {};
}

} // namespace simulator
