#include "till/window/stateline.h"

#include "till/window/texts.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStyle>

namespace till {

StateLine::StateLine(QWidget *parent)
    : QFrame(parent)
{
    setObjectName(QStringLiteral("state"));
    auto *const row = new QHBoxLayout(this);
    row->setContentsMargins(12, 4, 12, 4);
    row->setSpacing(12);
    service = addLabel(QStringLiteral("stateService"));
    waiting = addLabel(QStringLiteral("stateWaiting"));
    refused = new QPushButton(this);
    refused->setObjectName(QStringLiteral("stateRefused"));
    refused->setFocusPolicy(Qt::TabFocus);
    refused->setMinimumHeight(44);
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
    mark(*service, state.reach == Reach::Unreachable ? "bad" : "good");
}

void StateLine::showDelivery(const TillState &state)
{
    const auto &delivery = state.delivery;
    if (!delivery.error.isEmpty()) {
        waiting->setText(tr("Orders: the disk does not answer"));
        mark(*waiting, "bad");
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
    mark(*waiting, state.waiting > 0 ? "attention" : "good");
    refused->setText(tr("Orders refused: %1").arg(delivery.refused));
    refused->setEnabled(delivery.refused > 0);
    mark(*refused, delivery.refused > 0 ? "bad" : "good");
}

void StateLine::showUnstored(qsizetype receipts)
{
    unstored->setText(tr("Receipts not on the disk: %1").arg(receipts));
    mark(*unstored, receipts > 0 ? "bad" : "good");
}

QLabel *StateLine::addLabel(const QString &name)
{
    auto *const label = new QLabel(this);
    label->setObjectName(name);
    label->setMinimumWidth(1); // a long text must not make the window wider than the screen
    layout()->addWidget(label);
    return label;
}

/// Has the style show the widget as good, to be noticed, or bad.
void StateLine::mark(QWidget &widget, const char *state)
{
    widget.setProperty("state", QLatin1String(state));
    widget.style()->polish(&widget);
}

} // namespace till
