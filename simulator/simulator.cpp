#include "simulator/simulator.h"

#include "simulator/httpfront.h"
#include "simulator/service.h"

#include <utility>

namespace simulator {

Simulator::Simulator(Options options)
    : options(std::move(options))
    , service(std::make_unique<Service>(this->options))
    , front(std::make_unique<HttpFront>(*service, faults, this->options))
{}

Simulator::~Simulator() = default;

bool Simulator::start()
{
    front->stop();
    if (!opened && !service->open()) {
        error = service->errorString();
        return false;
    }
    opened = true;
    error = front->start(front->port() == 0 ? options.port : front->port());
    return error.isEmpty();
}

void Simulator::stop()
{
    front->stop();
}

QString Simulator::errorString() const
{
    return error;
}

int Simulator::port() const
{
    return front->port();
}

QString Simulator::url(const QString &host) const
{
    const auto scheme =
        options.certificateFile.isEmpty() ? QStringLiteral("http") : QStringLiteral("https");
    return QStringLiteral("%1://%2:%3/v3/operations/sync").arg(scheme, host).arg(port());
}

void Simulator::addFault(const Fault &fault)
{
    faults.add(fault);
}

QString Simulator::lastCode(const QString &phone) const
{
    return service->lastCode(phone);
}

QJsonArray Simulator::orders() const
{
    return service->orders();
}

QJsonObject Simulator::dump() const
{
    return front->dump();
}

ReceivedRequest Simulator::lastRequest() const
{
    return front->lastRequest();
}

} // namespace simulator
