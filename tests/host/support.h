#pragma once

#include <QFile>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <csignal>
#include <ostream>
#include <sys/resource.h>
#include <sys/stat.h>

inline void PrintTo(const QString &text, std::ostream *out)
{
    *out << '"' << text.toStdString() << '"';
}

/// The log's messages since it was made.
class LogCapture
{
public:
    LogCapture()
    {
        messages().clear();
        previous = qInstallMessageHandler(
            [](QtMsgType, const QMessageLogContext &, const QString &text) { messages() += text; });
    }
    ~LogCapture() { qInstallMessageHandler(previous); }
    Q_DISABLE_COPY_MOVE(LogCapture)

    static QString text() { return messages().join(QLatin1Char('\n')); }
    static bool has(const QString &part) { return text().contains(part); }

private:
    static QStringList &messages()
    {
        static QStringList list;
        return list;
    }

    QtMessageHandler previous = nullptr;
};

/// A disk on which no file grows beyond `size` bytes, as long as this object lives.
class FullDisk
{
public:
    explicit FullDisk(rlim_t size)
        : signalBefore(::signal(SIGXFSZ, SIG_IGN)) // the write then fails
    {
        EXPECT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
        const rlimit limit{size, before.rlim_max};
        EXPECT_EQ(::setrlimit(RLIMIT_FSIZE, &limit), 0);
    }
    ~FullDisk()
    {
        EXPECT_EQ(::setrlimit(RLIMIT_FSIZE, &before), 0);
        (void)::signal(SIGXFSZ, signalBefore);
    }
    Q_DISABLE_COPY_MOVE(FullDisk)

private:
    void (*signalBefore)(int);
    rlimit before{};
};

/// A directory of the test's own, under a umask that takes no right away.
class WithFiles : public testing::Test
{
protected:
    WithFiles()
        : umaskBefore(::umask(0))
    {}
    ~WithFiles() override { ::umask(umaskBefore); }

    QString path(const QString &name) const { return directory.filePath(name); }

    QString write(const QString &name, const QByteArray &content, mode_t mode = 0600) const
    {
        QFile file(path(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        EXPECT_EQ(file.write(content), content.size());
        EXPECT_EQ(::chmod(QFile::encodeName(path(name)).constData(), mode), 0);
        return path(name);
    }

    static QByteArray read(const QString &path)
    {
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    }

    static unsigned mode(const QString &path)
    {
        struct stat status = {};
        EXPECT_EQ(::stat(QFile::encodeName(path).constData(), &status), 0) << path.toStdString();
        return status.st_mode & 07777U;
    }

private:
    mode_t umaskBefore;
    QTemporaryDir directory;
};
