#include "host/savetofilelogic.h"

#include "host/abstractdocument.h"
#include "host/documentjson.h"
#include "host/privatefile.h"
#include "host/session.h"

#include <QFileInfo>
#include <QJsonDocument>
#include <QLoggingCategory>

template class MockFactory<SaveToFileLogic>;

namespace {

Q_LOGGING_CATEGORY(log, "till.receipt", QtInfoMsg)

constexpr qint64 maximumFileSize = 64LL << 20;

} // namespace

SaveToFileLogic::~SaveToFileLogic() = default;

bool SaveToFileLogic::save(const QSharedPointer<AbstractDocument> &document,
                           const QString &fileName)
{
    const auto file =
        fileName.isEmpty() ? Singleton<Session>::instance()->getDocumentFile() : fileName;
    if (!document || file.isEmpty())
        return false;
    QString error;
    const auto content =
        QJsonDocument(documentjson::toJson(*document, error)).toJson(QJsonDocument::Compact);
    if (error.isEmpty() && content.size() > maximumFileSize)
        error = QStringLiteral("the receipt is longer than %1 bytes").arg(maximumFileSize);
    if (error.isEmpty())
        error = privatefile::createDirectory(QFileInfo(file).path()).value_or(QString());
    if (error.isEmpty())
        error = privatefile::write(file, content).value_or(QString());
    if (!error.isEmpty())
        qCCritical(log, "%ls: the receipt is not saved: %ls", qUtf16Printable(file),
                   qUtf16Printable(error));
    return error.isEmpty();
}

LoadedDocument SaveToFileLogic::load(const QString &fileName)
{
    LoadedDocument result;
    const auto content = privatefile::read(fileName, maximumFileSize);
    result.error = content.error;
    if (result.error.isEmpty()) {
        QJsonParseError parsing;
        const auto json = QJsonDocument::fromJson(content.bytes, &parsing);
        if (parsing.error != QJsonParseError::NoError)
            result.error = QStringLiteral("offset %1: expected JSON: %2")
                               .arg(parsing.offset)
                               .arg(parsing.errorString());
        else if (!json.isObject())
            result.error = QStringLiteral("expected a JSON object");
        else
            result.document = documentjson::fromJson(json.object(), result.error);
        result.isDamaged = !result.document && !documentjson::isNewer(json.object());
    }
    if (!result.error.isEmpty())
        result.error =
            QStringLiteral("%1: the receipt cannot be read: %2").arg(fileName, result.error);
    return result;
}
