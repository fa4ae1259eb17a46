#include "till/office/finding.h"

#include "till/core/settingtable.h"
#include "till/office/answer.h"
#include "till/office/connection.h"

#include "interface/interface.h"

#include <host/restclient.h>
#include <host/secretkey.h>

#include <QElapsedTimer>
#include <QRegularExpression>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace till {

namespace {

using enum Finding::Level;

constexpr auto urlKey = "LmMindbox:url"_L1;
constexpr auto authorityKey = "Http:caFile"_L1;
constexpr auto connectionCheck = "service.connection";
constexpr auto certificateCheck = "service.certificate";
constexpr auto answerCheck = "service.answer";

/// What fails, and the remedy as in `Findings::add`.
struct Fault
{
    const char *check; ///< Null for no fault.
    QString mend;
    QString key = {};
};

void checkProxy(const Connection &connection, Findings &findings)
{
    const auto isNone = connection.proxy().isEmpty();
    // A user and a password stand before the "@".
    const auto text =
        u"%1: %2"_s.arg(connection.proxySource(), connection.proxy().section(u'@', -1));
    findings.add(
        isNone || connection.proxySource() == "Http:proxy"_L1 ? Ok : Warning, "proxy",
        isNone ? Office::tr("none") : text, {},
        Office::tr("A system service has another environment: set Http:proxy, or no_proxy."));
}

void checkCertificate(const Connection &connection, Findings &findings)
{
    constexpr qint64 fewDays = 14;
    const auto certificate = connection.certificate();
    if (!certificate)
        return;
    const auto &[subject, issuer, expires] = *certificate;
    const auto days = QDateTime::currentDateTimeUtc().daysTo(expires);
    findings.certificateExpires = expires.toSecsSinceEpoch();
    findings.add(days < fewDays ? Warning : Ok, certificateCheck,
                 Office::tr("%1, by %2, until %3 (%4 days)")
                     .arg(subject, issuer, expires.toString(u"dd.MM.yyyy"_s))
                     .arg(days),
                 {}, Office::tr("Its owner must renew it before that day."));
}

void checkClock(const Connection &connection, Findings &findings)
{
    constexpr qint64 wrong = 3600;
    constexpr qint64 doubtful = 60;
    findings.clockAhead = connection.clockAhead();
    const auto slip = std::abs(findings.clockAhead.value_or(0));
    const auto doubt = slip > doubtful ? Warning : Ok;
    const auto found =
        findings.clockAhead
            ? Office::tr("%1 s ahead of the service's clock").arg(*findings.clockAhead)
            : Office::tr("the service does not tell the time");
    findings.add(slip > wrong ? Failed : doubt, "clock", found, {},
                 Office::tr("Set the clock, and keep it right with systemd-timesyncd or chrony."));
}

/// libcurl has one code for all failed handshakes; only its words tell whether the other side
/// speaks TLS.
bool isOldTls(const QString &words)
{
    static const QRegularExpression spoken(
        u"SSL routines(?!.*(wrong version number|packet length too long|unexpected eof))"_s);
    return words.contains(spoken);
}

Fault noTls()
{
    return {certificateCheck,
            Office::tr("The port does not speak TLS: correct scheme and port in %1."), urlKey};
}

/// Tells why a certificate is not accepted, by OpenSSL's number for it.
Fault trustFault(long verdict)
{
    constexpr long hasExpired = 10;
    constexpr long isTrusted = 1; // or 0; 1 also stands for "not known yet"
    if (verdict == hasExpired)
        return {certificateCheck, Office::tr("The certificate has expired: its owner must renew "
                                             "it, or this clock is wrong.")};
    if (verdict <= isTrusted)
        return {certificateCheck, Office::tr("The certificate is for another host: correct %1."),
                urlKey};
    return {certificateCheck,
            Office::tr("The certificate's authority is not trusted: name its PEM file in %1."),
            authorityKey};
}

/// Tells a handshake that hangs from a port without TLS.
Fault silenceFault(QUrl url)
{
    constexpr int httpsPort = 443;
    url.setPort(url.port(httpsPort));
    url.setScheme(u"http"_s);
    Connection plain(url);
    if (plain.open() == CURLE_OK)
        return noTls();
    if (!plain.isConnected())
        return {};
    return {certificateCheck,
            Office::tr("The service hangs during the TLS handshake; ask its owner.")};
}

Fault tlsFault(const Connection &connection, const QUrl &url)
{
    switch (connection.code()) {
    case CURLE_SSL_CACERT_BADFILE:
        return {certificateCheck,
                Office::tr("Without this file no certificate is trusted: install ca-certificates, "
                           "or correct %1."),
                authorityKey};
    case CURLE_PEER_FAILED_VERIFICATION:
        return trustFault(connection.info<long>(CURLINFO_SSL_VERIFYRESULT));
    case CURLE_SSL_CONNECT_ERROR:
        if (!isOldTls(connection.words()))
            return noTls();
        return {certificateCheck,
                Office::tr("The service's TLS is too old: its owner must enable 1.2.")};
    case CURLE_OPERATION_TIMEDOUT:
        if (url.scheme() == "https"_L1 &&
            connection.info<curl_off_t>(CURLINFO_APPCONNECT_TIME_T) == 0)
            return silenceFault(url);
        return {};
    default:
        return {};
    }
}

/// The step that failed; after a time-out, the step that was under way.
Fault faultOf(const Connection &connection, const QUrl &url)
{
    if (connection.isProxyLoginWanted())
        return {connectionCheck, Office::tr("Put the proxy's user and password into %1."),
                connection.proxySource()};
    if (connection.code() == CURLE_OK)
        return {};
    if (const auto fault = tlsFault(connection, url); fault.check)
        return fault;
    if (!connection.isConnected() && !connection.proxy().isEmpty())
        return {connectionCheck, Office::tr("Correct the proxy %1, or remove it."),
                connection.proxySource()};
    if (connection.code() == CURLE_COULDNT_RESOLVE_HOST ||
        connection.info<curl_off_t>(CURLINFO_NAMELOOKUP_TIME_T) == 0)
        return {"service.name", Office::tr("Correct the host in %1, or the name server."), urlKey};
    if (!connection.isConnected())
        return {connectionCheck,
                Office::tr("Correct the port in %1, or let the till through the firewall."),
                urlKey};
    if (connection.code() == CURLE_OPERATION_TIMEDOUT)
        return {answerCheck, Office::tr("The service hangs; ask its owner.")};
    return {answerCheck, Office::tr("The port does not speak http: begin %1 with https."), urlKey};
}

/// \return Whether the service answers.
bool checkWay(Findings &findings)
{
    const QUrl url(settingText(urlKey));
    Connection connection(url);
    connection.open();
    checkProxy(connection, findings);
    const auto [check, mend, key] = faultOf(connection, url);
    if (connection.isConnected() && !connection.isProxyLoginWanted())
        findings.ok(connectionCheck,
                    Office::tr("%1 in %2 ms")
                        .arg(QLatin1StringView(connection.info<const char *>(CURLINFO_PRIMARY_IP)))
                        .arg(connection.info<curl_off_t>(CURLINFO_CONNECT_TIME_T) / 1'000));
    if (check) {
        const auto found = connection.isProxyLoginWanted()
                               ? Office::tr("the proxy asks for a user and a password")
                               : Office::tr("no connection: \"%1\"").arg(connection.words());
        findings.add(Failed, check, found, key, mend);
        return false;
    }
    checkCertificate(connection, findings);
    checkClock(connection, findings);
    return true;
}

/// The remedy for a failed look-up.
Fault lookUpFault(const lmmindbox::OperationResult &result)
{
    if (result.transportCode != 0)
        return {{}, Office::tr("The service hangs, or %1 is too short."), u"LmMindbox:timeout"_s};
    switch (result.httpCode) {
    case 401:
        return {{}, {}, u"LmMindbox:secretKey"_s};
    case 403:
        return {{},
                Office::tr("Correct %1, or have the service grant it the rights."),
                u"LmMindbox:endpoint"_s};
    case 404:
    case 405:
        return {{}, Office::tr("Correct the path in %1."), urlKey};
    case 429:
    case 503:
        return {{}, Office::tr("The service is overloaded; try again later.")};
    default:
        break;
    }
    if (!result.response.isEmpty())
        return {{}, Office::tr("The service's message says what is wrong.")};
    return {{},
            Office::tr("The answer is not the service's: correct %1, or log in to the network."),
            urlKey};
}

void checkLookUp(const QString &phone, Findings &findings)
{
    constexpr auto check = "service.lookup";
    // Asks a service that a sale would skip, too.
    RestClient::setPurpose(RestClient::Purpose::Delivery);
    QElapsedTimer timer;
    timer.start();
    // The numbering plan has no such code, so nobody has this number.
    const auto result =
        lmmindbox::Interface().getCustomer(phone.isEmpty() ? u"70000000000"_s : phone);
    if (result.success() || result.status == lmmindbox::OperationStatus::ValidationError) {
        findings.ok(check, Office::tr("answered in %1 ms: %2")
                               .arg(timer.elapsed())
                               .arg(result.customer.found() ? Office::tr("customer found")
                                                            : Office::tr("no such customer")));
        return;
    }
    const auto said = withoutSecretKey(result.response.value("errorMessage"_L1).toString());
    const auto text =
        result.transportCode != 0
            ? Office::tr("no answer in %1 ms").arg(timer.elapsed())
            : Office::tr("HTTP code %1, message: \"%2\"").arg(result.httpCode).arg(said.left(200));
    const auto fault = lookUpFault(result);
    findings.add(Failed, check, text, fault.key, fault.mend);
}

} // namespace

void checkService(const QString &phone, Findings &findings)
{
    if (!findings.hasFailed(urlKey) && !findings.hasFailed(authorityKey) && checkWay(findings))
        checkLookUp(phone, findings);
}

} // namespace till
