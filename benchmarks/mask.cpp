#include "benchmarks/comparison.h"
#include "benchmarks/setup.h"

#include "converter/converter.h"

#include <host/abstractdocument.h>
#include <host/session.h>
#include <host/simpleformatter.h>

#include <array>
#include <cstdio>

namespace bench {

namespace {

/// The floor of the mask language: the default order id without any mask.
QString handmadeOrderId(const DocumentHeader &header)
{
    std::array<char, 64> text{};
    const auto time = header.dateTimeBeg.time();
    const auto length = std::snprintf(text.data(), text.size(), "%04d%02d%04d%07d%02d%02d%02d",
                                      header.shopCode, header.cashCode, header.shift, header.num,
                                      time.hour(), time.minute(), time.second());
    return QString::fromLatin1(text.data(), length);
}

/// Keeps what the converter has a mask expanded with.
class RecordingFormatter : public SimpleFormatter
{
public:
    RecordingFormatter() { MockFactory<SimpleFormatter>::mocked = this; }
    ~RecordingFormatter() override { MockFactory<SimpleFormatter>::mocked = nullptr; }
    Q_DISABLE_COPY_MOVE(RecordingFormatter)

    QString format(const QString &mask, const QList<QSharedPointer<FormatterSource>> &sources,
                   int /*index*/, const QVariantMap & /*extra*/) const override
    {
        lastMask = mask;
        lastSources = sources;
        return {};
    }

    mutable QString lastMask;
    mutable QList<QSharedPointer<FormatterSource>> lastSources;
};

void expandMask(benchmark::State &state)
{
    const auto receipt = makeReceipt(1, 1);
    Singleton<Session>::instance()->setCurrentDocument(receipt);
    const RecordingFormatter recorded;
    (void)lmmindbox::Converter().getIds();
    Singleton<Session>::instance()->setCurrentDocument(nullptr);

    const SimpleFormatter formatter;
    const auto ours = [&] {
        return formatter.format(recorded.lastMask, recorded.lastSources, 0, {});
    };
    const auto &header = receipt->getHeader();
    if (ours() != handmadeOrderId(header))
        fail(state, "the order ids differ");
    else
        compare(
            state, 100, [&] { return !ours().isEmpty(); },
            [&] { return !handmadeOrderId(header).isEmpty(); });
}

} // namespace

void registerMasks()
{
    benchmark::RegisterBenchmark("expandMask", expandMask)->UseManualTime();
}

} // namespace bench
