#include "till/core/printable.h"

#include <algorithm>
#include <ostream>

namespace till {

QString printable(const QString &text)
{
    auto shown = text;
    const auto isUnsafe = [](QChar character) {
        return character.category() == QChar::Other_Control && character != u'\n';
    };
    std::replace_if(shown.begin(), shown.end(), isUnsafe, QChar(u'?'));
    return shown;
}

void printLine(std::ostream &output, const QString &text)
{
    output << printable(text).toStdString() << '\n' << std::flush;
}

} // namespace till
