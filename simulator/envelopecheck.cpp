#include "simulator/envelopecheck.h"

namespace simulator {

using namespace Qt::Literals::StringLiterals;

namespace {

std::optional<Answer> checkQuery(const ReceivedRequest &request, const QString &endpoint)
{
    QStringList names;
    for (const auto &[name, value] : request.query) {
        if (name != "endpointId"_L1 && name != "operation"_L1 && name != "transactionId"_L1)
            return protocolError(400, QStringLiteral("Unknown query item '%1'").arg(name));
        if (names.contains(name))
            return protocolError(400, QStringLiteral("Query item '%1' stands twice").arg(name));
        if (value.isEmpty())
            return protocolError(400, QStringLiteral("Query item '%1' is empty").arg(name));
        names.append(name);
    }
    for (const auto name : {"endpointId"_L1, "operation"_L1}) {
        if (!names.contains(name))
            return protocolError(400, QStringLiteral("Query item '%1' is missing").arg(name));
    }
    if (const auto sent = request.queryItem("endpointId"_L1); sent != endpoint)
        return protocolError(403, QStringLiteral("Unknown endpoint '%1'").arg(sent));
    return {};
}

std::optional<Answer> checkHeader(const ReceivedRequest &request, const QByteArray &name,
                                  const QByteArray &expected)
{
    const auto values = request.headers.values(name.toLower());
    if (values.size() == 1 && values.first() == expected)
        return {};
    return protocolError(400, QStringLiteral("Header '%1' must stand once with the value '%2'")
                                  .arg(QString::fromLatin1(name), QString::fromLatin1(expected)));
}

std::optional<Answer> checkAuthorization(const ReceivedRequest &request, const QString &secretKey)
{
    const auto expected = QStringLiteral("Mindbox secretKey=\"%1\"").arg(secretKey).toUtf8();
    const auto values = request.headers.values("authorization");
    if (values.size() == 1 && values.first() == expected)
        return {};
    // The expected value is a secret and what was sent may be one.
    return protocolError(401, QStringLiteral("The secret key is missing or wrong"));
}

} // namespace

std::optional<Answer> checkEnvelope(const ReceivedRequest &request, const Options &options)
{
    if (auto refused = checkQuery(request, options.endpoint))
        return refused;
    if (auto refused = checkHeader(request, "Content-Type", "application/json; charset=utf-8"))
        return refused;
    if (auto refused = checkHeader(request, "Accept", "application/json"))
        return refused;
    return checkAuthorization(request, options.secretKey);
}

} // namespace simulator
