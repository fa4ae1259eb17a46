#include "simulator/bodycheck.h"
#include "simulator/presets.h"
#include "simulator/simulator.h"

#include <QFile>
#include <QJsonDocument>

#include <algorithm>

namespace simulator {

using namespace Qt::StringLiterals;

namespace {

/// The page runs only its own script and calls only its own service, whatever texts it shows.
constexpr auto contentPolicy =
    "default-src 'none'; script-src 'self'; style-src 'self'; connect-src 'self'; "
    "img-src 'self'; base-uri 'none'; form-action 'none'; frame-ancestors 'none'; "
    "require-trusted-types-for 'script'; trusted-types 'none'"_L1;

/// A file of the page.
std::optional<Answer> pageFile(const QString &path)
{
    static const QHash<QString, QString> types{
        {u"/index.html"_s, u"text/html; charset=utf-8"_s},
        {u"/style.css"_s, u"text/css; charset=utf-8"_s},
        {u"/script.js"_s, u"text/javascript; charset=utf-8"_s},
        {u"/icon.svg"_s, u"image/svg+xml"_s}};
    const auto name = path == "/"_L1 ? u"/index.html"_s : path;
    QFile file(u":/simulator/page"_s + name);
    if (!types.contains(name) || !file.open(QIODevice::ReadOnly))
        return {};
    return Answer{.headers = {{"Content-Type"_L1, types[name]},
                              {"Content-Security-Policy"_L1, contentPolicy},
                              {"X-Content-Type-Options"_L1, "nosniff"_L1},
                              {"Referrer-Policy"_L1, "no-referrer"_L1},
                              {"Cache-Control"_L1, "no-store"_L1}},
                  .body = file.readAll()};
}

/// Whether the request names this machine as its host: a foreign page whose name was redirected
/// here names another one. A request that changes something must come from the service's own page,
/// or from a program that is no browser.
bool isAllowed(const Request &request, bool isSecure)
{
    const auto host = request.headers.value(u"host"_s);
    const auto name = host.section(u':', 0, 0);
    const auto isOwn = [&request](const QString &header, const QString &own) {
        return !request.headers.contains(header) || request.has(header, own);
    };
    return (name == "127.0.0.1"_L1 || name == "localhost"_L1) &&
           (request.method == "GET"_L1 ||
            (isOwn(u"origin"_s, (isSecure ? u"https://"_s : u"http://"_s) + host) &&
             isOwn(u"sec-fetch-site"_s, u"same-origin"_s)));
}

} // namespace

Answer Simulator::control(const Request &request)
{
    if (request.method.isEmpty())
        return protocolError(400, u"The request cannot be read"_s);
    if (!isAllowed(request, !options.certificateFile.isEmpty()))
        return protocolError(403, u"Only the service's own page may ask this"_s);
    if (auto file = pageFile(request.path); file && request.method == "GET"_L1)
        return *std::move(file);
    const auto asked = request.method + u' ' + request.path;
    if (asked == "GET /simulator/events"_L1)
        return success();
    if (asked == "GET /simulator/dump"_L1)
        return asJson(dump());
    using Handler = Answer (Simulator::*)(const Request &);
    static const std::initializer_list<std::pair<QLatin1String, Handler>> handlers{
        {"POST /simulator/faults"_L1, &Simulator::addFaults},
        {"DELETE /simulator/faults"_L1, &Simulator::clearFaults},
        {"PUT /simulator/customers/"_L1, &Simulator::putCustomer},
        {"DELETE /simulator/customers/"_L1, &Simulator::removeCustomer},
        {"GET /simulator/exchanges"_L1, &Simulator::findExchanges},
        {"POST /simulator/reset"_L1, &Simulator::reset}};
    for (const auto &[served, handler] : handlers) {
        if (served.endsWith(u'/') ? asked.startsWith(served) : asked == served) {
            const std::lock_guard lock(mutex);
            return (this->*handler)(request);
        }
    }
    return protocolError(404, u"Nothing is served at this path"_s);
}

QString Simulator::addFault(const QJsonObject &fault)
{
    const std::lock_guard lock(mutex);
    return faults.add(fault);
}

QJsonObject Simulator::dump() const
{
    const std::lock_guard lock(mutex);
    QJsonObject result{{"faults"_L1, faults.toJson()}, {"requests"_L1, requests}};
    for (const auto name : {kept::customers, kept::codes, kept::letters, kept::orders})
        result.insert(name, state.all(name));
    return result;
}

Answer Simulator::addFaults(const Request &request)
{
    const auto wrong = faults.add(QJsonDocument::fromJson(request.body).object());
    return wrong.isEmpty() ? success() : protocolError(400, wrong);
}

Answer Simulator::clearFaults(const Request &request)
{
    if (auto wrong = checkQuery(request, u"query of faults"_s))
        return *std::move(wrong);
    faults.clear(request.item(u"kind"_s));
    return success();
}

Answer Simulator::putCustomer(const Request &request)
{
    const auto phone = normalizedPhone(request.path.section(u'/', 3));
    const auto document = QJsonDocument::fromJson(request.body);
    const auto sent = merged(document.object(), {{"mobilePhone"_L1, phone}});
    const auto wrong = inWords(checkBody(sent, u"others"_s, u"customer"_s));
    if (!wrong.isEmpty() || !document.isObject())
        return protocolError(400, wrong.isEmpty() ? u"The body is no JSON object"_s : wrong);
    const auto customer = merged(newCustomer(phone), sent);
    state.put(kept::customers, phone, customer);
    const auto stored = state.commit();
    return stored ? success({{"customer"_L1, customer}}) : protocolError(500, stored.error());
}

Answer Simulator::removeCustomer(const Request &request)
{
    const auto phone = normalizedPhone(request.path.section(u'/', 3));
    if (state.get(kept::customers, phone).isEmpty())
        return protocolError(404, u"No customer has the phone '%1'"_s.arg(phone));
    state.remove(kept::customers, phone);
    state.remove(kept::codes, phone);
    const auto stored = state.commit();
    state.beginAnew();
    return stored ? success() : protocolError(500, stored.error());
}

Answer Simulator::findExchanges(const Request &request)
{
    if (auto wrong = checkQuery(request, u"query of exchanges"_s))
        return *std::move(wrong);
    const QJsonObject wanted{{"operation"_L1, request.item(u"operation"_s)},
                             {"order"_L1, request.item(u"order"_s)},
                             {"phone"_L1, normalizedPhone(request.item(u"phone"_s))}};
    const auto limit = request.item(u"limit"_s).toInt();
    QJsonArray found;
    const auto journal = state.all(kept::exchanges);
    for (auto i = journal.size() - 1; i >= 0 && found.size() < (limit > 0 ? limit : 100); --i) {
        const bool isWanted = std::ranges::all_of(wanted.keys(), [&](const auto &name) {
            return wanted[name] == ""_L1 || wanted[name] == journal[i][name];
        });
        if (isWanted)
            found.append(journal[i]);
    }
    return asJson(QJsonObject{{"exchanges"_L1, found}});
}

Answer Simulator::reset(const Request & /*request*/)
{
    if (const auto done = state.reset(); !done)
        return protocolError(500, u"Nothing was reset: %1"_s.arg(done.error()));
    faults = {};
    requests = {};
    return success();
}

} // namespace simulator
