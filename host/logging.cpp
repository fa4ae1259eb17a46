#include "host/logging.h"

#include "host/privatefile.h"
#include "host/secretkey.h"

#include <QFileInfo>
#include <QtGlobal>

#include <cerrno>
#include <fcntl.h>
#include <mutex>
#include <unistd.h>
#include <utility>

namespace logging {

namespace {

constexpr int none = -1;

struct Destinations
{
    std::mutex mutex;
    QString path;
    int file = none;
    int standardError = none;
};

Destinations &destinations()
{
    // Never destroyed: the program's last objects may still log.
    static auto *const object = new Destinations;
    return *object;
}

/// What ends a line or hides one, escaped.
QString onOneLine(const QString &message)
{
    QString result;
    result.reserve(message.size());
    for (const auto character : message) {
        const auto category = character.category();
        if (character == QLatin1Char('\n'))
            result += QLatin1String("\\n");
        else if (character == QLatin1Char('\r'))
            result += QLatin1String("\\r");
        else if (character == QLatin1Char('\t'))
            result += QLatin1String("\\t");
        else if (category == QChar::Other_Control || category == QChar::Separator_Line ||
                 category == QChar::Separator_Paragraph)
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

void handle(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    const auto reason = errno;
    const auto line =
        qFormatLogMessage(type, context, onOneLine(withoutSecretKey(message))).toUtf8() + '\n';
    {
        auto &to = destinations();
        const std::scoped_lock lock(to.mutex);
        writeLine(to.standardError, line);
        writeLine(to.file, line);
    }
    errno = reason;
}

/// \return The descriptor, `none` after a failure.
int openFile(const QString &path)
{
    return privatefile::open(path, O_WRONLY | O_APPEND | O_CREAT | O_NONBLOCK);
}

QString problemWith(const QString &path)
{
    return QStringLiteral("%1: the log cannot be written: %2").arg(path, qt_error_string(errno));
}

/// Has the lines go there from now on; empty for no file. Nobody can ask for a renamed file to be
/// opened anew between its opening and its use.
std::optional<QString> setDestinations(const QString &path, int standardError)
{
    auto &to = destinations();
    const std::scoped_lock lock(to.mutex);
    const auto opened = path.isEmpty() ? none : openFile(path);
    if (opened == none && !path.isEmpty())
        return problemWith(path);
    if (to.file != none)
        ::close(to.file);
    to.path = path;
    to.file = opened;
    to.standardError = standardError;
    return std::nullopt;
}

} // namespace

std::optional<QString> start(const QString &file, bool toStandardError)
{
    if (!file.isEmpty()) {
        if (auto error = privatefile::createDirectory(QFileInfo(file).path()))
            return error;
    }
    if (auto error = setDestinations(file, toStandardError ? STDERR_FILENO : none))
        return error;
    // Without effect when the environment has a pattern.
    qSetMessagePattern(
        QStringLiteral("%{time yyyy-MM-dd hh:mm:ss.zzz} %{type} %{category}: %{message}"));
    qInstallMessageHandler(handle);
    return std::nullopt;
}

std::optional<QString> reopen()
{
    auto &to = destinations();
    const std::scoped_lock lock(to.mutex);
    if (to.path.isEmpty())
        return std::nullopt;
    const auto opened = openFile(to.path);
    if (opened == none)
        return problemWith(to.path);
    ::close(std::exchange(to.file, opened));
    return std::nullopt;
}

void stop()
{
    qInstallMessageHandler(nullptr);
    (void)setDestinations({}, none);
}

} // namespace logging
