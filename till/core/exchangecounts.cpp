#include "till/core/exchangecounts.h"

#include <host/httpresponse.h>
#include <host/privatefile.h>
#include <host/restclient.h>

#include <QUrl>
#include <QUrlQuery>

#include <algorithm>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <sys/file.h>
#include <unistd.h>

namespace till {

namespace {

/// A series as the file holds it. A free place has no operation.
struct Record
{
    std::array<char, 64> operation;
    std::array<char, 16> outcome;
    qint64 count;
    qint64 microseconds;
    qint64 last;
    std::array<qint64, ExchangeCounts::bounds.size()> within;
};

constexpr std::array<char, 8> mark{'e', 'x', 'c', 'h', 'n', 'g', 's', '1'};

QString fileIn(const QString &directory)
{
    return directory + QLatin1String("/exchanges");
}

template<size_t size>
QString textOf(const std::array<char, size> &chars)
{
    return QString::fromUtf8(chars.data(),
                             static_cast<qsizetype>(::strnlen(chars.data(), chars.size())));
}

template<size_t size>
void write(std::array<char, size> &chars, const QString &text)
{
    chars.fill('\0');
    const auto bytes = text.toUtf8().left(static_cast<qsizetype>(size) - 1);
    std::copy(bytes.begin(), bytes.end(), chars.begin());
}

QString outcomeOf(const http::Response &response)
{
    if (response.getTransportCode() == RestClient::notSent)
        return QStringLiteral("not_sent");
    const auto status = response.responseObject().value(QLatin1String("status"));
    if (status.isUndefined())
        return QStringLiteral("no_answer"); // nothing, or something of somebody else's
    return status == QLatin1String("Success") ? QStringLiteral("success")
                                              : QStringLiteral("refused");
}

} // namespace

/// All of the file.
struct ExchangeCounts::File
{
    std::array<char, 8> begin;
    qint64 unstored;
    std::array<Record, 64> records;

    /// The record of that series, a new one if need be; the last one when there is no more place.
    Record &find(const QString &operation, const QString &outcome)
    {
        auto *const found =
            std::find_if(records.begin(), records.end() - 1, [&](const Record &record) {
                return record.operation.front() == '\0' ||
                       (textOf(record.operation) == operation && textOf(record.outcome) == outcome);
            });
        if (found->operation.front() == '\0') {
            write(found->operation, operation);
            write(found->outcome, outcome);
        }
        return *found;
    }
};

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
            auto &record = file.find(operation, outcomeOf(exchange.response));
            ++record.count;
            record.microseconds += exchange.duration.count();
            record.last = QDateTime::currentSecsSinceEpoch();
            for (size_t i = 0; i < bounds.size(); ++i)
                record.within[i] += exchange.duration <= std::chrono::milliseconds(bounds[i]);
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
    const auto file = std::make_unique<File>();
    const auto size = ::pread(descriptor, file.get(), sizeof(File), 0);
    if (size != static_cast<ssize_t>(sizeof(File)) || file->begin != mark)
        *file = File{mark, 0, {}};
    change(*file);
    // Should it fail, this exchange is not counted.
    [[maybe_unused]] const auto written = ::pwrite(descriptor, file.get(), sizeof(File), 0);
    ::flock(descriptor, LOCK_UN);
}

ExchangeCounts::Snapshot ExchangeCounts::read(const QString &directory)
{
    const auto content = privatefile::read(fileIn(directory), sizeof(File));
    const auto file = std::make_unique<File>();
    if (content.bytes.size() != static_cast<qsizetype>(sizeof(File)))
        return {};
    std::memcpy(file.get(), content.bytes.constData(), sizeof(File));
    if (file->begin != mark)
        return {};
    Snapshot snapshot;
    snapshot.unstored = file->unstored;
    for (const auto &record : file->records) {
        if (record.count > 0)
            snapshot.series.append({textOf(record.operation), textOf(record.outcome), record.count,
                                    std::chrono::microseconds(record.microseconds), record.last,
                                    record.within});
    }
    return snapshot;
}

} // namespace till
