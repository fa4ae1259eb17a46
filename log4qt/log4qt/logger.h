#pragma once

#include <QLoggingCategory>
#include <QString>

#if defined(LOG4QT_LIBRARY)
#    define LOG4QT_EXPORT Q_DECL_EXPORT
#else
#    define LOG4QT_EXPORT Q_DECL_IMPORT
#endif

namespace Log4Qt {

/// A named logger over a Qt logging category of the same name.
///
/// Level, pattern and destination are Qt's (QT_LOGGING_RULES, QT_MESSAGE_PATTERN, an installed
/// message handler). The arguments of a message fill its %1, %2 in order.
class LOG4QT_EXPORT Logger
{
public:
    explicit Logger(QByteArray name);

    bool isDebugEnabled() const { return category.isDebugEnabled(); }

    template<typename... Args>
    void debug(const QString &message, const Args &...args) const
    {
        if (category.isDebugEnabled())
            write(QtDebugMsg, fill(message, args...));
    }
    template<typename... Args>
    void info(const QString &message, const Args &...args) const
    {
        if (category.isInfoEnabled())
            write(QtInfoMsg, fill(message, args...));
    }
    template<typename... Args>
    void warn(const QString &message, const Args &...args) const
    {
        if (category.isWarningEnabled())
            write(QtWarningMsg, fill(message, args...));
    }
    template<typename... Args>
    void error(const QString &message, const Args &...args) const
    {
        if (category.isCriticalEnabled())
            write(QtCriticalMsg, fill(message, args...));
    }

private:
    template<typename... Args>
    static QString fill(const QString &message, const Args &...args)
    {
        // All at once: an argument that contains "%2" must not be filled by the next one.
        if constexpr (sizeof...(args) > 0)
            return message.arg(QStringLiteral("%1").arg(args)...);
        else
            return message;
    }
    void write(QtMsgType type, const QString &message) const;

    QByteArray storedName; // the category keeps a pointer to it
    QLoggingCategory category;
};

} // namespace Log4Qt
