#include "fuzz/fuzzing.h"

#include "host/exchangelog.h"

#include <host/httpresponse.h>
#include <host/logging.h>

#include <log4qt/logger.h>

#include <QFile>
#include <QLoggingCategory>

namespace {

const auto secret = QStringLiteral("s3cret");
const QHash<QString, QString> headers = {
    {QStringLiteral("Authorization"), QStringLiteral("key=\"%1\"").arg(secret)}};

/// The log of the process, in a file.
class CapturedLog
{
public:
    CapturedLog()
        : file(scratchDirectory() + QLatin1String("/till.log"))
    {
        QLoggingCategory::setFilterRules(QStringLiteral("exchange=true"));
        require(!logging::start(file.fileName(), false));
        require(file.open(QIODevice::ReadWrite));
    }
    /// The line that was written since the last call; it holds no other break and no control.
    QString takeLine()
    {
        require(file.seek(0));
        auto line = QString::fromUtf8(file.readAll());
        require(file.resize(0));
        require(line.endsWith(QLatin1Char('\n')));
        line.chop(1);
        for (const auto character : line) {
            const auto category = character.category();
            require(category != QChar::Other_Control && category != QChar::Separator_Line &&
                    category != QChar::Separator_Paragraph);
        }
        return line;
    }

    const Log4Qt::Logger logger{"exchange"};

private:
    QFile file;
};

} // namespace

/// Whatever a service answers, a till sends or the transport complains of is one line of the log,
/// and no body shows the secret that the headers hold.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static CapturedLog log;
    static const QUrl url(QStringLiteral("https://service.invalid/"));
    const auto bytes = bytesOf({data, size});
    const ExchangeLog exchange(&log.logger, false, url, headers);
    exchange.writeAnswer({200, 0, bytes});
    require(!log.takeLine().contains(secret));
    exchange.writeRequest(QJsonDocument::fromJson(bytes));
    require(!log.takeLine().contains(secret));
    exchange.writeFailure(QString::fromUtf8(bytes), 7);
    require(log.takeLine().contains(url.host()));
    return 0;
}
