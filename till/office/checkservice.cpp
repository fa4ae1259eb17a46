#include "till/office/finding.h"

#include "till/office/serviceprobe.h"
#include "till/office/texts.h"

#include "interface/interface.h"

#include <host/config.h>
#include <host/proxy.h>
#include <host/restclient.h>
#include <host/secretkey.h>

#include <QElapsedTimer>
#include <QUrl>

#include <algorithm>
#include <utility>

namespace till {

namespace {

/// Nobody's: the numbering plan has no such code.
const auto nobodysPhone = QStringLiteral("70000000000");

void checkProxy(const QUrl &url, Findings &findings)
{
    constexpr auto check = "proxy";
    const auto proxy = Proxy::of(url);
    if (proxy.address.isEmpty()) {
        findings.ok(check, Office::tr("none"));
        return;
    }
    const auto text = QStringLiteral("%1: %2").arg(
        proxy.source, proxy.harmless(QString::fromUtf8(proxy.address)));
    findings.add(Finding::levelOf(false, proxy.source != QLatin1String("Http:proxy")), check, text,
                 Office::tr("The environment of a service is another one: set Http:proxy, or "
                            "no_proxy."));
}

QString certificateText(const ShownCertificate &certificate)
{
    const auto days = QDateTime::currentDateTimeUtc().daysTo(certificate.expires);
    return Office::tr("%1, by %2, until %3 (%4 days)")
        .arg(certificate.subject, certificate.issuer,
             certificate.expires.toString(QStringLiteral("dd.MM.yyyy")))
        .arg(days);
}

void checkCertificate(const ServiceProbe &probe, Findings &findings)
{
    constexpr qint64 fewDays = 14;
    if (probe.chain.isEmpty())
        return;
    const auto earliest =
        *std::min_element(probe.chain.cbegin(), probe.chain.cend(),
                          [](const auto &a, const auto &b) { return a.expires < b.expires; });
    findings.certificateExpires = earliest.expires.toSecsSinceEpoch();
    const auto isNear = QDateTime::currentDateTimeUtc().daysTo(earliest.expires) < fewDays;
    findings.add(Finding::levelOf(false, isNear), "service.certificate", certificateText(earliest),
                 Office::tr("Its owner must renew it before that day."));
}

void checkClock(const ServiceProbe &probe, Findings &findings)
{
    constexpr auto check = "clock";
    constexpr qint64 wrong = 3600;
    constexpr qint64 doubtful = 60;
    if (!probe.clockAhead) {
        findings.ok(check, Office::tr("the service does not tell the time"));
        return;
    }
    const auto ahead = probe.clockAhead->count();
    findings.clockAhead = ahead;
    findings.add(Finding::levelOf(std::abs(ahead) > wrong, std::abs(ahead) > doubtful), check,
                 Office::tr("%1 s ahead of the service's").arg(ahead),
                 Office::tr("Put the clock right and keep it so: systemd-timesyncd or chrony."));
}

QString mendOfCertificate(const ServiceProbe &probe)
{
    if (!probe.chain.isEmpty() && probe.chain.first().expires < QDateTime::currentDateTimeUtc())
        return Office::tr("The certificate has expired: the service, or this clock, must be put "
                          "right.");
    return probe.isOfOtherHost
               ? Office::tr("The certificate is for another host: correct LmMindbox:url.")
               : Office::tr("Its authority is not trusted: name its PEM file in Http:caFile.");
}

/// Which check has failed, and what is to be done.
std::pair<const char *, QString> failureOf(const ServiceProbe &probe, bool isDirect)
{
    using Failure = ServiceProbe::Failure;
    switch (probe.failure) {
    case Failure::None:
        break;
    case Failure::Name:
        if (isDirect)
            return {"service.name",
                    Office::tr("Correct the host in LmMindbox:url, or the name server.")};
        [[fallthrough]];
    case Failure::Connection:
        return {"service.connection",
                isDirect ? Office::tr("Correct the port in LmMindbox:url, or let the till through "
                                      "the firewall.")
                         : Office::tr("Correct the proxy, or do without.")};
    case Failure::Tls:
        return {"service.certificate", Office::tr("There is no TLS at this port: correct scheme "
                                                  "and port in LmMindbox:url.")};
    case Failure::Authorities:
        return {"service.certificate", Office::tr("Nobody is trusted without this file: install "
                                                  "ca-certificates, or correct Http:caFile.")};
    case Failure::Certificate:
        return {"service.certificate", mendOfCertificate(probe)};
    case Failure::Silent:
        return {"service.answer", Office::tr("The service hangs; ask its owner.")};
    case Failure::Answer:
        return {"service.answer", Office::tr("Begin LmMindbox:url with https: what answers at this "
                                             "port does not speak http.")};
    }
    return {};
}

void checkWay(const QUrl &url, const ServiceProbe &probe, Findings &findings)
{
    using Failure = ServiceProbe::Failure;
    if (probe.failure != Failure::Name && probe.failure != Failure::Connection)
        findings.ok("service.connection",
                    Office::tr("%1 in %2 ms").arg(probe.address).arg(probe.connectTime.count()));
    if (probe.failure != Failure::Certificate)
        checkCertificate(probe, findings);
    const auto proxy = Proxy::of(url);
    const auto [check, mend] = failureOf(probe, proxy.address.isEmpty());
    if (!check) {
        checkClock(probe, findings);
        return;
    }
    auto reason = probe.reason + proxy.note();
    if (probe.failure == Failure::Certificate && !probe.chain.isEmpty()) {
        findings.certificateExpires = probe.chain.first().expires.toSecsSinceEpoch();
        reason += QStringLiteral("; ") + certificateText(probe.chain.first());
    }
    findings.fail(check, reason, mend);
}

/// What is to be done about an answer that is not the one hoped for.
QString mendOf(const lmmindbox::OperationResult &result)
{
    if (result.transportCode != 0)
        return Office::tr("The service hangs, or LmMindbox:timeout is too short.");
    switch (result.httpCode) {
    case 401:
        return Office::tr("Correct LmMindbox:secretKey.");
    case 403:
        return Office::tr("Correct LmMindbox:endpoint; its rights are given at the service.");
    case 404:
    case 405:
        return Office::tr("Correct the path in LmMindbox:url.");
    case 429:
    case 503:
        return Office::tr("The service has too much to do; try again later.");
    default:
        break;
    }
    if (result.response.isEmpty())
        return Office::tr("Something else than the service has answered: correct LmMindbox:url, "
                          "or log in to the network.");
    return Office::tr("The service's own words say what it does not like.");
}

void checkLookUp(const QString &phone, Findings &findings)
{
    constexpr auto check = "service.lookup";
    RestClient::setPurpose(RestClient::Purpose::Delivery); // nothing here is too slow to be asked
    lmmindbox::Interface service;
    QElapsedTimer timer;
    timer.start();
    const auto result = service.getCustomer(phone.isEmpty() ? nobodysPhone : phone);
    const auto time = timer.elapsed();
    using lmmindbox::OperationStatus;
    if (result.success() || result.status == OperationStatus::ValidationError) {
        findings.ok(check, Office::tr("answered in %1 ms: %2")
                               .arg(time)
                               .arg(result.customer.found() ? Office::tr("customer found")
                                                            : Office::tr("no such customer")));
        return;
    }
    auto text = Office::tr("HTTP code %1 in %2 ms").arg(result.httpCode).arg(time);
    if (result.transportCode != 0)
        text = RestClient::transportErrorText(result.transportCode);
    else if (result.response.isEmpty())
        text += Office::tr(", no JSON object");
    const auto said = result.response.value(QLatin1String("errorMessage")).toString();
    if (!said.isEmpty())
        text += QStringLiteral(": ") + withoutSecretKey(said).left(200);
    findings.fail(check, text, mendOf(result));
}

} // namespace

void checkService(const QString &phone, Findings &findings)
{
    const auto *const config = Singleton<Config>::instance();
    const QUrl url(config->getText(QStringLiteral("LmMindbox:url")));
    if (!url.isValid() || url.host().isEmpty()) {
        findings.fail("service.name", Office::tr("not asked"),
                      Office::tr("Set LmMindbox:url to the service's URL."));
        return;
    }
    checkProxy(url, findings);
    constexpr int usual = 5;
    const std::chrono::seconds timeout(
        std::max(1, config->getInt(QStringLiteral("LmMindbox:timeout"), usual)));
    const auto probe = probeService(url, timeout);
    checkWay(url, probe, findings);
    if (probe.failure == ServiceProbe::Failure::None)
        checkLookUp(phone, findings);
}

} // namespace till
