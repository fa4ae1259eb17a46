#include "fuzz/fuzzing.h"

#include <host/abstractdocument.h>
#include <host/savetofilelogic.h>

#include <QFile>

namespace {

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    require(file.open(QIODevice::ReadOnly));
    return file.readAll();
}

} // namespace

/// A file that is read at all comes out the same however often it is saved and read.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    SaveToFileLogic files;
    const auto first = files.load(writeScratchFile(QStringLiteral("foreign"), {data, size}));
    require(first.error.isEmpty() == !first.document.isNull());
    if (!first.document)
        return 0;

    const auto path = scratchDirectory() + QLatin1String("/own");
    require(files.save(first.document, path));
    const auto content = contentOf(path);
    const auto second = files.load(path);
    require(!second.document.isNull());
    require(second.document->getHeader() == first.document->getHeader());
    require(second.document->getTotal() == first.document->getTotal());
    require(second.document->allPluginData() == first.document->allPluginData());
    require(files.save(second.document, path));
    require(contentOf(path) == content);
    return 0;
}
