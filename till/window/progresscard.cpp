#include "till/window/progresscard.h"

#include "till/window/named.h"

#include <QGridLayout>
#include <QLabel>
#include <QLocale>
#include <QProgressBar>

namespace till {

ProgressCard::ProgressCard(QWidget &window)
    : QFrame(&window)
    , label(named(new QLabel(this), QStringLiteral("progressText")))
    , seconds(named(new QLabel(this), QStringLiteral("progressSeconds")))
    , bar(new QProgressBar(this))
{
    using namespace std::chrono_literals;
    setObjectName(QStringLiteral("progress"));
    bar->setTextVisible(false);
    auto *const grid = new QGridLayout(this);
    grid->setContentsMargins(20, 14, 20, 14);
    grid->addWidget(label, 0, 0);
    grid->addWidget(seconds, 0, 1, Qt::AlignRight | Qt::AlignBottom);
    grid->addWidget(bar, 1, 0, 1, 2);
    grid->setColumnMinimumWidth(0, 340);
    timer.setInterval(80ms);
    connect(&timer, &QTimer::timeout, this, &ProgressCard::tick);
    hide();
    setText({});
}

void ProgressCard::setText(const QString &text)
{
    label->setText(text.isEmpty() ? tr("One moment, please ...") : text);
}

void ProgressCard::setWaiting(bool on)
{
    if (on == timer.isActive())
        return;
    if (on) {
        since.start();
        timer.start();
    } else {
        timer.stop();
        hide();
        emit shown();
    }
}

void ProgressCard::tick()
{
    constexpr qint64 unnoticed = 200;
    constexpr int round = 1'200;
    const auto elapsed = since.elapsed();
    if (elapsed < unnoticed)
        return;
    //: Seconds that the till has waited.
    seconds->setText(
        tr("%1 s").arg(QLocale().toString(static_cast<double>(elapsed) / 1000, 'f', 1)));
    bar->setMaximum(round);
    bar->setValue(static_cast<int>(elapsed % round));
    if (!isVisible()) {
        show();
        raise();
        emit shown();
    }
}

} // namespace till
