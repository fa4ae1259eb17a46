#include "host/logging.h"

#include "host/privatefile.h"
#include "host/secretkey.h"

#include <QFile>
#include <QFileInfo>
#include <QtGlobal>

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <mutex>

using namespace Qt::StringLiterals;

namespace logging {

namespace {

struct Destinations
{
    std::mutex mutex;
    QFile file;
    bool toStandardError = false;
};

Destinations &destinations()
{
    // Never destroyed: the program's last objects may still log.
    static auto *const object = new Destinations;
    return *object;
}

/// Escapes the characters that could end or hide a log line.
QString onOneLine(const QString &message)
{
    QString result;
    result.reserve(message.size());
    for (const auto character : message) {
        const auto category = character.category();
        if (character == u'\n')
            result += R"(\n)"_L1;
        else if (character == u'\r')
            result += R"(\r)"_L1;
        else if (character == u'\t')
            result += R"(\t)"_L1;
        else if (category == QChar::Other_Control || category == QChar::Separator_Line ||
                 category == QChar::Separator_Paragraph)
            result += u"\\u%1"_s.arg(uint(character.unicode()), 4, 16, QChar(u'0'));
        else
            result += character;
    }
    return result;
}

void handle(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    const auto reason = errno;
    const auto line =
        qFormatLogMessage(type, context, onOneLine(withoutSecretKey(message))).toUtf8() + '\n';
    {
        auto &to = destinations();
        const std::scoped_lock lock(to.mutex);
        if (to.toStandardError)
            std::fputs(line.constData(), stderr);
        if (to.file.isOpen())
            to.file.write(line);
    }
    errno = reason;
}

} // namespace

tl::expected<void, QString> start(const QString &file, bool toStandardError)
{
    auto opened = -1;
    if (!file.isEmpty()) {
        auto fine = privatefile::createDirectory(QFileInfo(file).path()).and_then([&] {
            return privatefile::examine(file);
        });
        if (!fine)
            return fine;
        opened = privatefile::open(file, O_WRONLY | O_APPEND | O_CREAT);
        if (opened < 0)
            return tl::unexpected(
                u"%1: the log cannot be written: %2"_s.arg(file, qt_error_string(errno)));
    }
    stop();
    auto &to = destinations();
    const std::scoped_lock lock(to.mutex);
    to.toStandardError = toStandardError;
    if (opened >= 0)
        to.file.open(opened, QFile::Append | QFile::Unbuffered, QFile::AutoCloseHandle);
    // A pattern in the environment takes precedence.
    qSetMessagePattern(u"%{time yyyy-MM-dd hh:mm:ss.zzz} %{type} %{category}: %{message}"_s);
    qInstallMessageHandler(handle);
    return {};
}

void stop()
{
    qInstallMessageHandler(nullptr);
    auto &to = destinations();
    const std::scoped_lock lock(to.mutex);
    to.toStandardError = false;
    to.file.close();
}

} // namespace logging
