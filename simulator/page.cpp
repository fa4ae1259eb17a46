#include "simulator/page.h"

#include "simulator/pause.h"
#include "simulator/wire.h"

#include <QFile>
#include <QJsonDocument>

#include <chrono>

namespace simulator {

using namespace Qt::StringLiterals;

namespace {

constexpr std::chrono::milliseconds timeBetweenLooks{100};
/// A page that hears nothing for longer takes the connection for lost.
constexpr int looksBetweenSigns = 20;

/// The page runs nothing and asks nobody but what comes with it, whatever the texts it shows.
constexpr auto contentPolicy =
    "default-src 'none'; script-src 'self'; style-src 'self'; connect-src 'self'; "
    "base-uri 'none'; form-action 'none'; frame-ancestors 'none'; "
    "require-trusted-types-for 'script'; trusted-types 'none'";

void addFile(httplib::Server &server, const char *path, const QString &name, const char *type)
{
    QFile file(u":/simulator/page/"_s + name);
    const auto content = file.open(QIODevice::ReadOnly) ? file.readAll().toStdString() : "";
    server.Get(path, [content, type](const auto & /*request*/, httplib::Response &response) {
        response.headers.insert({{"Content-Security-Policy", contentPolicy},
                                 {"X-Content-Type-Options", "nosniff"},
                                 {"Referrer-Policy", "no-referrer"},
                                 {"Cache-Control", "no-store"}});
        response.set_content(content, type);
    });
}

/// Looks for news again and again: nobody has to tell a page, and a busy service does not flood it.
class Teller
{
public:
    Teller(News news, std::stop_token stop)
        : news(std::move(news))
        , stop(std::move(stop))
    {}

    /// Returns false when the page is gone or the service stops.
    bool operator()(std::size_t /*offset*/, httplib::DataSink &sink)
    {
        const auto fresh = news(told);
        const auto event =
            "data: " + QJsonDocument(fresh).toJson(QJsonDocument::Compact).toStdString() + "\n\n";
        const bool isDue = !fresh.isEmpty() || looks++ % looksBetweenSigns == 0;
        return (!isDue || sink.write(event.data(), event.size())) && pause(stop, timeBetweenLooks);
    }

private:
    News news;
    std::stop_token stop;
    Told told;
    int looks = 0;
};

} // namespace

void addPage(httplib::Server &server, const News &news, const std::stop_token &stop)
{
    addFile(server, "/", u"index.html"_s, "text/html; charset=utf-8");
    addFile(server, "/style.css", u"style.css"_s, "text/css; charset=utf-8");
    addFile(server, "/script.js", u"script.js"_s, "text/javascript; charset=utf-8");
    server.Get("/simulator/events",
               [news, stop](const auto & /*request*/, httplib::Response &response) {
                   response.set_header("Cache-Control", "no-store");
                   response.set_chunked_content_provider("text/event-stream", Teller(news, stop));
               });
}

bool isForThisMachine(const httplib::Request &request)
{
    const auto host = request.get_header_value("Host");
    const auto name = host.substr(0, host.find(':'));
    return name == "127.0.0.1" || name == "localhost";
}

bool isFromOwnPage(const httplib::Request &request, bool isSecure)
{
    const auto own = (isSecure ? "https://" : "http://") + request.get_header_value("Host");
    return isForThisMachine(request) &&
           (!request.has_header("Origin") || request.get_header_value("Origin") == own) &&
           (!request.has_header("Sec-Fetch-Site") ||
            request.get_header_value("Sec-Fetch-Site") == "same-origin");
}

} // namespace simulator
