#pragma once

#include "tests/support/fulldisk.h"
#include "tests/support/logcapture.h"
#include "tests/support/printqt.h"

#include <QDir>
#include <QFile>
#include <QString>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

/// A directory for the test, with a umask that removes no rights.
class WithFiles : public testing::Test
{
protected:
    ~WithFiles() override { ::umask(umaskBefore); }

    QString path(const QString &name) const { return directory.filePath(name); }

    QString write(const QString &name, const QByteArray &content, mode_t mode = 0600) const
    {
        QFile file(path(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        EXPECT_EQ(file.write(content), content.size());
        EXPECT_EQ(::chmod(qPrintable(path(name)), mode), 0);
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
        EXPECT_EQ(::stat(qPrintable(path), &status), 0) << path.toStdString();
        return status.st_mode & 07777U;
    }

private:
    const mode_t umaskBefore = ::umask(0);
    QTemporaryDir directory;
};
