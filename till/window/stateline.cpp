#include "till/window/stateline.h"

#include "till/window/named.h"
#include "till/window/texts.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

namespace till {

namespace {

constexpr QLatin1String good("good");
constexpr QLatin1String attention("attention");
constexpr QLatin1String bad("bad");

} // namespace

StateLine::StateLine(QWidget *parent)
    : QFrame(parent)
{
    setObjectName(QStringLiteral("state"));
    auto *const row = new QHBoxLayout(this);
    row->setContentsMargins(12, 4, 12, 4);
    row->setSpacing(12);
    service = addLabel(QStringLiteral("stateService"));
    waiting = addLabel(QStringLiteral("stateWaiting"));
    refused = named(new QPushButton(this), QStringLiteral("stateRefused"));
    refused->setFocusPolicy(Qt::TabFocus);
    row->addWidget(refused);
    unstored = addLabel(QStringLiteral("stateUnstored"));
    row->insertStretch(1, 1);
    connect(refused, &QPushButton::clicked, this, &StateLine::refusedClicked);
    show({});
    showUnstored(0);
}

void StateLine::show(const TillState &state)
{
    showService(state.service);
    showDelivery(state);
}

void StateLine::showService(const ServiceAvailability::State &state)
{
    using Reach = ServiceAvailability::Reach;
    switch (state.reach) {
    case Reach::Unknown:
        service->setText(tr("Loyalty: not asked yet"));
        break;
    case Reach::Reachable:
        service->setText(tr("Loyalty: answers"));
        break;
    case Reach::Unreachable:
        service->setText(tr("Loyalty: no answer since %1").arg(timeLabel(state.unreachableSince)));
        break;
    }
    mark(service, "state", state.reach == Reach::Unreachable ? bad : good);
}

void StateLine::showDelivery(const TillState &state)
{
    const auto &delivery = state.delivery;
    if (!delivery.error.isEmpty()) {
        waiting->setText(tr("Orders: the disk does not answer"));
        mark(waiting, "state", bad);
        return;
    }
    if (state.waiting == 0)
        waiting->setText(tr("Orders waiting: none"));
    else if (!delivery.oldestWaiting.isValid())
        waiting->setText(tr("Orders waiting: %1").arg(state.waiting));
    else
        waiting->setText(tr("Orders waiting: %1, since %2")
                             .arg(state.waiting)
                             .arg(timeLabel(delivery.oldestWaiting)));
    mark(waiting, "state", state.waiting > 0 ? attention : good);
    refused->setText(tr("Orders refused: %1").arg(delivery.refused));
    refused->setEnabled(delivery.refused > 0);
    mark(refused, "state", delivery.refused > 0 ? bad : good);
}

void StateLine::showUnstored(qsizetype receipts)
{
    unstored->setText(tr("Receipts not on the disk: %1").arg(receipts));
    mark(unstored, "state", receipts > 0 ? bad : good);
}

QLabel *StateLine::addLabel(const QString &name)
{
    auto *const label = named(new QLabel(this), name);
    label->setMinimumWidth(1); // a long text must not make the window wider than the screen
    layout()->addWidget(label);
    return label;
}

} // namespace till
