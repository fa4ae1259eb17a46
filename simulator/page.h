#pragma once

#include <QJsonObject>

#include <functional>
#include <stop_token>

namespace httplib {
class Server;
struct Request;
} // namespace httplib

namespace simulator {

/// How much an open page has been told.
struct Told
{
    int resets = -1;
    qint64 change = 0;
    qint64 exchange = 0;
    QJsonObject faults{};
};

/// Tells what a page has not been told yet, and notes that it was; empty for nothing new.
using News = std::function<QJsonObject(Told &told)>;

/// Serves at / the page that shows the service, and at /simulator/events its news as they come,
/// until the service stops.
void addPage(httplib::Server &server, const News &news, const std::stop_token &stop);

/// Whether the request goes to this machine by a name of its own. A page from elsewhere whose name
/// was made to point here has another.
bool isForThisMachine(const httplib::Request &request);

/// Whether the request may change something: it comes from the service's own page, or from a
/// program that is no browser and so names no page.
bool isFromOwnPage(const httplib::Request &request, bool isSecure);

} // namespace simulator
