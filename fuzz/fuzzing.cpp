#include "fuzz/fuzzing.h"

#include <QCoreApplication>
#include <QLoggingCategory>
#include <QTemporaryDir>

#include <cstdlib>

using namespace Qt::StringLiterals;

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    static const QCoreApplication application(*argc, *argv);
    // A zone that skips an hour in spring and repeats one in autumn.
    qputenv("TZ", "Europe/Berlin");
    // Millions of inputs would flood the log.
    QLoggingCategory::setFilterRules(u"*=false"_s);
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
    static const QTemporaryDir directory(u"/dev/shm/fuzz-XXXXXX"_s);
    return directory.path();
}
