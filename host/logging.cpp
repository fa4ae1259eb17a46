#include "host/logging.h"

#include "host/privatefile.h"

#include <QDateTime>
#include <QFileInfo>
#include <QtGlobal>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <mutex>
#include <unistd.h>

namespace logging {

namespace {

constexpr int none = -1;

struct Destinations
{
    std::mutex mutex;
    int file = none;
    int standardError = none;
    bool hasOwnPattern = false; ///< Whether the environment says what a line looks like.
    qint64 second = 0;          ///< Since the epoch; what `secondText` is the local time of.
    QByteArray secondText;
};

Destinations &destinations()
{
    // Never destroyed: the program's last objects may still log.
    static auto *const object = new Destinations;
    return *object;
}

bool isControl(QChar character)
{
    const auto category = character.category();
    return category == QChar::Other_Control || category == QChar::Separator_Line ||
           category == QChar::Separator_Paragraph;
}

QString withoutControls(const QString &message)
{
    if (std::none_of(message.cbegin(), message.cend(), isControl))
        return message;
    QString result;
    for (const auto character : message) {
        if (character == QLatin1Char('\n'))
            result += QLatin1String("\\n");
        else if (character == QLatin1Char('\r'))
            result += QLatin1String("\\r");
        else if (character == QLatin1Char('\t'))
            result += QLatin1String("\\t");
        else if (isControl(character))
            result += QStringLiteral("\\u%1").arg(character.unicode(), 4, 16, QLatin1Char('0'));
        else
            result += character;
    }
    return result;
}

void writeLine(int descriptor, const QByteArray &line)
{
    auto rest = line.size();
    while (descriptor != none && rest > 0) {
        const auto written =
            ::write(descriptor, line.constData() + line.size() - rest, static_cast<size_t>(rest));
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return; // there is no place to say so
        rest -= written;
    }
}

const char *typeName(QtMsgType type)
{
    switch (type) {
    case QtDebugMsg:
        return "debug";
    case QtInfoMsg:
        return "info";
    case QtWarningMsg:
        return "warning";
    case QtCriticalMsg:
        return "critical";
    case QtFatalMsg:
        break;
    }
    return "fatal";
}

/// "2026-03-05 14:07:09.042". The local time is asked for but once a second: each time the C
/// library looks whether the time zone has changed on disk, which costs more than the whole line.
QByteArray timeText(Destinations &to)
{
    constexpr int thousand = 1000;
    const auto now = QDateTime::currentMSecsSinceEpoch();
    if (const auto second = now / thousand; second != to.second || to.secondText.isEmpty()) {
        to.second = second;
        to.secondText = QDateTime::fromSecsSinceEpoch(second)
                            .toString(QStringLiteral("yyyy-MM-dd hh:mm:ss."))
                            .toLatin1();
    }
    return to.secondText + QByteArray::number(thousand + now % thousand).sliced(1);
}

QByteArray logLine(Destinations &to, QtMsgType type, const QMessageLogContext &context,
                   const QString &message)
{
    const auto harmless = withoutControls(message);
    if (to.hasOwnPattern)
        return qFormatLogMessage(type, context, harmless).toUtf8() + '\n';
    return timeText(to) + ' ' + typeName(type) + ' ' + context.category + ": " + harmless.toUtf8() +
           '\n';
}

void handle(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    const auto reason = errno;
    {
        auto &to = destinations();
        const std::scoped_lock lock(to.mutex);
        const auto line = logLine(to, type, context, message);
        writeLine(to.standardError, line);
        writeLine(to.file, line);
    }
    errno = reason;
}

} // namespace

std::optional<QString> start(const QString &file, bool toStandardError)
{
    auto opened = none;
    if (!file.isEmpty()) {
        if (auto error = privatefile::createDirectory(QFileInfo(file).path()))
            return error;
        opened = privatefile::open(file, O_WRONLY | O_APPEND | O_CREAT | O_NONBLOCK);
        if (opened == none)
            return QStringLiteral("%1: the log cannot be written: %2")
                .arg(file, qt_error_string(errno));
    }
    stop();
    {
        auto &to = destinations();
        const std::scoped_lock lock(to.mutex);
        to.file = opened;
        to.standardError = toStandardError ? STDERR_FILENO : none;
        to.hasOwnPattern = !qEnvironmentVariableIsEmpty("QT_MESSAGE_PATTERN");
    }
    qInstallMessageHandler(handle);
    return std::nullopt;
}

void stop()
{
    qInstallMessageHandler(nullptr);
    auto &to = destinations();
    const std::scoped_lock lock(to.mutex);
    if (to.file != none)
        ::close(to.file);
    to.file = none;
    to.standardError = none;
}

} // namespace logging
