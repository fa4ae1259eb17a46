#pragma once

#include "tests/support/fulldisk.h"
#include "tests/support/logcapture.h"
#include "tests/support/printqt.h"

#include <QFile>
#include <QString>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/stat.h>

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
