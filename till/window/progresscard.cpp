#include "till/window/progresscard.h"

#include "till/window/named.h"

#include <QBoxLayout>
#include <QLocale>
#include <QProgressBar>

#include <utility>

namespace till {

using namespace Qt::StringLiterals;

ProgressCard::ProgressCard(QWidget *parent)
    : QFrame(parent)
    , label(makeLabel(this, u"progressText"_s))
{
    setObjectName(u"progress");
    auto *const bar = new QProgressBar(this);
    bar->setRange(0, 0);
    bar->setTextVisible(false);
    auto *const column = new QVBoxLayout(this);
    column->setContentsMargins(12, 4, 12, 4);
    column->addWidget(label);
    column->addWidget(bar);
    connect(&timer, &QTimer::timeout, this, &ProgressCard::refresh);
}

void ProgressCard::setText(const QString &said)
{
    text = said;
    refresh();
}

void ProgressCard::setSteps(const QStringList &waiting)
{
    using namespace std::chrono_literals;
    steps = waiting;
    if (steps.isEmpty()) {
        since.invalidate();
        timer.stop();
    } else if (!since.isValid()) {
        since.start();
        timer.start(100ms);
    }
    refresh();
}

void ProgressCard::refresh()
{
    constexpr qint64 unnoticed = 200;
    const auto elapsed = since.isValid() ? since.elapsed() : 0;
    const auto isLong = elapsed >= unnoticed;
    if (isLong) {
        //: What the till waits for, and the seconds that it has waited.
        auto said = tr("%1, %2 s")
                        .arg(text.isEmpty() ? steps.value(0) : text,
                             QLocale().toString(static_cast<double>(elapsed) / 1000, 'f', 1));
        if (const auto behind = static_cast<int>(steps.size()) - 1; behind > 0)
            said += u'\n' + tr("Waiting behind it: %1").arg(behind);
        label->setText(said);
    }
    if (std::exchange(isNoticed, isLong) != isLong)
        emit shown(isLong);
}

} // namespace till
