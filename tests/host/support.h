#pragma once

#include "tests/support/logcapture.h"
#include "tests/support/printqt.h"

#include <QFile>
#include <QString>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>

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
