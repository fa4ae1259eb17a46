#include "log4qt/logger.h"

#include <utility>

namespace Log4Qt {

Logger::Logger(QByteArray name)
    : storedName(std::move(name))
    , category(storedName.constData(), QtInfoMsg)
{}

void Logger::write(QtMsgType type, const QString &message) const
{
    const QMessageLogContext context(nullptr, 0, nullptr, storedName.constData());
    qt_message_output(type, context, message);
}

} // namespace Log4Qt
