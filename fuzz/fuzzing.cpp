#include "fuzz/fuzzing.h"

#include <QCoreApplication>
#include <QLoggingCategory>
#include <QTemporaryDir>

#include <cstdlib>

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    static const QCoreApplication application(*argc, *argv);
    // A zone that skips an hour in spring and repeats one in autumn.
    qputenv("TZ", "Europe/Berlin");
    // Millions of inputs would flood the log.
    QLoggingCategory::setFilterRules(QStringLiteral("*=false"));
    return 0;
}

void require(bool condition)
{
    if (!condition)
        std::abort();
}

QByteArray bytesOf(Bytes bytes)
{
    return {reinterpret_cast<const char *>(bytes.data()), static_cast<qsizetype>(bytes.size())};
}

QString scratchDirectory()
{
    static const QTemporaryDir directory(QStringLiteral("/dev/shm/fuzz-XXXXXX"));
    return directory.path();
}
