#include "simulator/page.h"

#include "simulator/wire.h"

#include <QFile>
#include <QJsonDocument>

#include <chrono>
#include <memory>
#include <string>

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

void addFile(httplib::Server &server, const std::string &path, const QString &name,
             const char *type)
{
    QFile file(u":/simulator/page/"_s + name);
    const auto content = file.open(QIODevice::ReadOnly) ? file.readAll().toStdString() : "";
    server.Get(path, [content, type](const httplib::Request &request, httplib::Response &response) {
        if (!isForThisMachine(request)) {
            refuse(response);
            return;
        }
        response.set_header("Content-Security-Policy", contentPolicy);
        response.set_header("X-Content-Type-Options", "nosniff");
        response.set_header("Referrer-Policy", "no-referrer");
        response.set_header("Cache-Control", "no-store");
        response.set_content(content, type);
    });
}

/// Looks for news again and again: nobody has to tell a page, and a busy service does not flood it.
bool tell(Told &told, int &looks, Pauses &pauses, const News &news, httplib::DataSink &sink)
{
    const auto fresh = news(told);
    if (!fresh.isEmpty() || looks % looksBetweenSigns == 0) {
        const auto event =
            "data: " + QJsonDocument(fresh).toJson(QJsonDocument::Compact).toStdString() + "\n\n";
        if (!sink.write(event.data(), event.size()))
            return false;
    }
    ++looks;
    return pauses.pause(timeBetweenLooks);
}

} // namespace

void addPage(httplib::Server &server, Pauses &pauses, const News &news)
{
    addFile(server, "/", u"index.html"_s, "text/html; charset=utf-8");
    addFile(server, "/style.css", u"style.css"_s, "text/css; charset=utf-8");
    addFile(server, "/script.js", u"script.js"_s, "text/javascript; charset=utf-8");
    server.Get("/simulator/events",
               [&pauses, news](const httplib::Request &request, httplib::Response &response) {
                   if (!isForThisMachine(request)) {
                       refuse(response);
                       return;
                   }
                   response.set_header("Cache-Control", "no-store");
                   response.set_chunked_content_provider(
                       "text/event-stream",
                       [&pauses, news, told = std::make_shared<Told>(),
                        looks = std::make_shared<int>(0)](std::size_t, httplib::DataSink &sink) {
                           return tell(*told, *looks, pauses, news, sink);
                       });
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
