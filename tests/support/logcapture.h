#pragma once

#include <QLoggingCategory>
#include <QStringList>

#include <mutex>
#include <utility>

using namespace Qt::StringLiterals;

/// Captures the log's lines while it lives, each after the letter of its level: D, I, W, E or F.
class LogCapture
{
public:
    /// A category limits it to that category's lines, with debug level.
    explicit LogCapture(const char *category = nullptr)
    {
        take();
        wanted = category;
        if (category)
            QLoggingCategory::setFilterRules(QLatin1String(category) + ".debug=true"_L1);
        previous = qInstallMessageHandler(keep);
    }
    ~LogCapture()
    {
        qInstallMessageHandler(previous);
        QLoggingCategory::setFilterRules({});
    }
    Q_DISABLE_COPY_MOVE(LogCapture)

    /// Returns the lines and forgets them.
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
            lines += u"%1 %2"_s.arg(QLatin1Char("DWEFI"[type])).arg(text);
    }

    static inline std::mutex mutex;
    static inline QStringList lines;
    static inline const char *wanted = nullptr;

    QtMessageHandler previous = nullptr;
};
