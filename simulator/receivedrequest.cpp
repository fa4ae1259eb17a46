#include "simulator/receivedrequest.h"

#include <QUrlQuery>

#include <algorithm>

namespace simulator {

void ReceivedRequest::readQuery()
{
    const auto mark = target.indexOf('?');
    if (mark < 0)
        return;
    auto encoded = QString::fromLatin1(target.mid(mark + 1));
    encoded.replace(QLatin1Char('+'), QLatin1String("%20"));
    query = QUrlQuery(encoded).queryItems(QUrl::FullyDecoded);
}

QString ReceivedRequest::queryItem(QLatin1String name) const
{
    const auto item = std::find_if(query.begin(), query.end(),
                                   [name](const auto &pair) { return pair.first == name; });
    return item == query.end() ? QString() : item->second;
}

} // namespace simulator
