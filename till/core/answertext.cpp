#include "till/core/answertext.h"

#include <host/secretkey.h>

#include <QJsonDocument>

namespace till {

QString answerText(const QJsonObject &answer)
{
    constexpr qsizetype longest = 4096;
    if (answer.isEmpty())
        return {};
    const auto text =
        withoutSecretKey(QString::fromUtf8(QJsonDocument(answer).toJson(QJsonDocument::Compact)));
    return text.size() > longest ? text.left(longest) + QChar(0x2026) : text;
}

} // namespace till
