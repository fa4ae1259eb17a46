#pragma once

#include <QLoggingCategory>
#include <QStringList>

#include <mutex>
#include <utility>

/// The log's lines while this object lives, each behind its level's letter: D, I, W, E or F.
class LogCapture
{
public:
    /// With a category only its lines, those of debug level included.
    explicit LogCapture(const char *category = nullptr)
    {
        take();
        wanted = category;
        if (category)
            QLoggingCategory::setFilterRules(QLatin1String(category) +
                                             QLatin1String(".debug=true"));
        previous = qInstallMessageHandler(keep);
    }
    ~LogCapture()
    {
        qInstallMessageHandler(previous);
        QLoggingCategory::setFilterRules({});
    }
    Q_DISABLE_COPY_MOVE(LogCapture)

    /// Hands the lines out and forgets them.
    static QStringList take()
    {
        const std::scoped_lock lock(mutex);
        return std::exchange(lines, {});
    }
    static QString text()
    {
        const std::scoped_lock lock(mutex);
        return lines.join(QLatin1Char('\n'));
    }
    static bool has(const QString &part) { return text().contains(part); }

private:
    static void keep(QtMsgType type, const QMessageLogContext &context, const QString &text)
    {
        const std::scoped_lock lock(mutex);
        if (!wanted || qstrcmp(context.category, wanted) == 0)
            lines += QStringLiteral("%1 %2").arg(QLatin1Char("DWEFI"[type])).arg(text);
    }

    static inline std::mutex mutex;
    static inline QStringList lines;
    static inline const char *wanted = nullptr;

    QtMessageHandler previous = nullptr;
};
