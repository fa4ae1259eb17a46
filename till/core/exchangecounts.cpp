#include "till/core/exchangecounts.h"

#include <host/httpresponse.h>
#include <host/privatefile.h>
#include <host/restclient.h>

#include <QDateTime>
#include <QUrl>
#include <QUrlQuery>

#include <algorithm>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace till {

namespace {

QString fileIn(const QString &directory)
{
    return directory + QLatin1String("/exchanges");
}

QLatin1String outcomeOf(const http::Response &response)
{
    if (response.getTransportCode() == RestClient::notSent)
        return QLatin1String("not_sent");
    const auto status = response.responseObject().value(QLatin1String("status"));
    if (status.isUndefined())
        return QLatin1String("no_answer"); // nothing, or something of somebody else's
    return QLatin1String(status == QLatin1String("Success") ? "success" : "refused");
}

/// The series of that operation and outcome, a new one if need be; the last one when there is no
/// more place.
ExchangeCounts::Series &find(ExchangeCounts::File &file, const QString &operation,
                             QLatin1String outcome)
{
    auto &all = file.series;
    auto *const found =
        std::find_if(all.begin(), all.end() - 1, [&](const ExchangeCounts::Series &series) {
            return series.count == 0 || (ExchangeCounts::textOf(series.operation) == operation &&
                                         ExchangeCounts::textOf(series.outcome) == outcome);
        });
    if (found->count == 0) {
        qstrncpy(found->operation.data(), operation.toUtf8().constData(), found->operation.size());
        qstrncpy(found->outcome.data(), outcome.data(), found->outcome.size());
    }
    return *found;
}

} // namespace

ExchangeCounts::ExchangeCounts(const QString &directory)
    : descriptor(privatefile::open(fileIn(directory), O_RDWR | O_CREAT))
{
    if (descriptor >= 0 && ::posix_fallocate(descriptor, 0, sizeof(File)) != 0) {
        ::close(descriptor);
        descriptor = -1;
    }
    RestClient::setObserver([this](const RestClient::Exchange &exchange) {
        const auto operation =
            QUrlQuery(exchange.url).queryItemValue(QStringLiteral("operation"), QUrl::FullyDecoded);
        change([&](File &file) {
            auto &series = find(file, operation, outcomeOf(exchange.response));
            ++series.count;
            series.microseconds += exchange.duration.count();
            series.last = QDateTime::currentSecsSinceEpoch();
            for (size_t i = 0; i < bounds.size(); ++i)
                series.within[i] += exchange.duration <= std::chrono::milliseconds(bounds[i]);
        });
    });
}

ExchangeCounts::~ExchangeCounts()
{
    RestClient::setObserver({});
    if (descriptor >= 0)
        ::close(descriptor);
}

void ExchangeCounts::setUnstored(qint64 count)
{
    change([count](File &file) { file.unstored = count; });
}

template<typename Change>
void ExchangeCounts::change(Change change)
{
    const std::scoped_lock lock(mutex);
    if (descriptor < 0 || ::flock(descriptor, LOCK_EX) != 0)
        return;
    File file;
    const auto size = ::pread(descriptor, &file, sizeof(file), 0);
    if (size != static_cast<ssize_t>(sizeof(file)) || file.mark != usualMark)
        file = {};
    change(file);
    // Should it fail, this exchange is not counted.
    [[maybe_unused]] const auto written = ::pwrite(descriptor, &file, sizeof(file), 0);
    ::flock(descriptor, LOCK_UN);
}

ExchangeCounts::File ExchangeCounts::read(const QString &directory)
{
    const auto content = privatefile::read(fileIn(directory), sizeof(File));
    File file;
    if (content.bytes.size() == static_cast<qsizetype>(sizeof(file)))
        std::memcpy(&file, content.bytes.constData(), sizeof(file));
    return file.mark == usualMark ? file : File();
}

QString ExchangeCounts::textOf(QByteArrayView field)
{
    return QString::fromUtf8(
        field.first(static_cast<qsizetype>(qstrnlen(field.data(), field.size()))));
}

} // namespace till
