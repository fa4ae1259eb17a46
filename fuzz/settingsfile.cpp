#include "fuzz/fuzzing.h"

#include <host/config.h>

namespace {

/// A file that is accepted gives back every value character for character.
void checkValues(const Config &config, const QString &content)
{
    for (const auto &line : content.split(QLatin1Char('\n'))) {
        const auto separator = line.indexOf(QLatin1Char('='));
        if (line.isEmpty() || line.startsWith(QLatin1Char('#')))
            continue;
        require(separator > 0);
        require(config.getText(line.left(separator)) == line.mid(separator + 1));
        (void)config.getInt(line.left(separator), 0);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const auto before = QStringLiteral("kept");
    Config config;
    config.set(before, before);
    const auto path = writeScratchFile(QStringLiteral("till.conf"), {data, size});
    if (const auto refusal = config.load(path)) {
        require(refusal->startsWith(path + QLatin1Char(':')));
        require(config.getText(before) == before);
    } else {
        checkValues(config, QString::fromUtf8(bytesOf({data, size})));
    }
    return 0;
}
