#include "till/office/commands.h"

#include "till/core/deliverer.h"
#include "till/core/deliveryloop.h"
#include "till/core/exchangecounts.h"
#include "till/core/printable.h"
#include "till/core/retention.h"
#include "till/office/signalpause.h"

#include "interface/interface.h"

#include <host/dbqueuebroker.h>
#include <host/restclient.h>

#include <QElapsedTimer>
#include <QFile>

#include <ostream>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace till {

namespace {

/// How far a long delivery has come, in one line of a terminal that is written again and again.
class DeliveryProgress
{
public:
    DeliveryProgress(DBQueueBroker &broker, std::ostream &output)
        : output(output)
    {
        constexpr qint64 worthShowing = 100;
        const auto state = broker.state(loyaltyQueue());
        if (state && state->waiting >= worthShowing && ::isatty(STDOUT_FILENO) != 0)
            total = state->waiting;
        sinceShown.start();
    }
    ~DeliveryProgress()
    {
        if (total > 0)
            output << '\n';
    }
    Q_DISABLE_COPY_MOVE(DeliveryProgress)

    void step()
    {
        constexpr qint64 pause = 200;
        ++sent;
        if (total == 0 || sinceShown.elapsed() < pause)
            return;
        sinceShown.start();
        output << '\r' << printable(QStringLiteral("%1 / %2").arg(sent).arg(total)).toStdString()
               << std::flush;
    }

private:
    std::ostream &output;
    QElapsedTimer sinceShown;
    qint64 total = 0;
    qint64 sent = 0;
};

/// By which a file is told from another one in its place; 0 when there is none.
ino_t fileNumber(const QByteArray &file)
{
    struct stat status = {};
    return ::stat(file.constData(), &status) == 0 ? status.st_ino : 0;
}

} // namespace

int runDelivery(const Settings &settings, bool once, std::ostream &output)
{
    RestClient::setPurpose(RestClient::Purpose::Delivery);
    SignalPause pause;
    const ExchangeCounts counts(settings.dataDirectory);
    DBQueueBroker broker(Store::fileIn(settings.dataDirectory));
    lmmindbox::Interface service;
    Deliverer deliverer(broker, service);
    DeliveryLoop loop(deliverer, Backoff(settings.backoff), pause);
    if (!once) {
        Retention retention(settings.dataDirectory);
        const auto file = QFile::encodeName(broker.file());
        loop.setWhenIdle([&, known = fileNumber(file)]() mutable {
            retention.step();
            // The till may have put a damaged store aside and begun a new one.
            if (const auto now = fileNumber(file); now != std::exchange(known, now))
                broker.setFile(broker.file());
        });
        loop.run();
        return 0;
    }
    const auto isDone = [&] {
        DeliveryProgress progress(broker, output);
        loop.setBeforeEach([&progress] { progress.step(); });
        return loop.runOnce();
    }();
    const auto state = broker.state(loyaltyQueue());
    const auto text = state ? textOf(*state) : broker.lastError();
    // A queue that cannot be read says the same in its state; a round that parks has no error.
    if (!deliverer.lastError().isEmpty() && deliverer.lastError() != text)
        printLine(output, deliverer.lastError());
    printLine(output, text);
    if (!state || state->waiting > 0)
        return 1;
    if (state->parked > 0)
        return parkedExit;
    return isDone ? 0 : 1;
}

} // namespace till
