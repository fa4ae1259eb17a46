#include "till/window/stateline.h"

#include "till/window/named.h"
#include "till/words/figures.h"

#include <QHBoxLayout>
#include <QPushButton>

namespace till {

namespace {

using namespace Qt::StringLiterals;

constexpr auto good = "good"_L1;
constexpr auto attention = "attention"_L1;
constexpr auto bad = "bad"_L1;

} // namespace

StateLine::StateLine(QWidget *parent)
    : QFrame(parent)
{
    setObjectName(u"state");
    auto *const row = new QHBoxLayout(this);
    row->setContentsMargins(12, 4, 12, 4);
    row->setSpacing(12);
    service = add(makeLabel(this, u"stateService"_s));
    row->addStretch(1);
    badGoods = add(named(new QPushButton(this), u"stateGoods"_s));
    waiting = add(makeLabel(this, u"stateWaiting"_s));
    refused = add(named(new QPushButton(this), u"stateRefused"_s));
    unstored = add(makeLabel(this, u"stateUnstored"_s));
    connect(refused, &QPushButton::clicked, this, &StateLine::refusedClicked);
    connect(badGoods, &QPushButton::clicked, this, &StateLine::badGoodsClicked);
    // A long text must not make the window wider than the screen.
    service->setMinimumWidth(1);
    waiting->setMinimumWidth(1);
    showBadGoods(0);
    showService({});
    showDelivery({});
    showUnstored(0);
}

/// Adds a part that tells of a fault until it is marked otherwise.
template<typename Widget>
Widget *StateLine::add(Widget *part)
{
    part->setFocusPolicy(Qt::NoFocus);
    mark(part, "state", bad);
    layout()->addWidget(part);
    return part;
}

void StateLine::showService(const ServiceAvailability::State &state)
{
    const auto isOffline = state.unreachableSince.isValid();
    service->setText(state.isAsked ? tr("Loyalty service: online")
                                   : tr("Loyalty service: not asked yet"));
    if (isOffline)
        service->setText(
            tr("Loyalty service: offline since %1").arg(timeLabel(state.unreachableSince)));
    mark(service, "state", isOffline ? bad : good);
}

void StateLine::showDelivery(const DeliveryState &delivery)
{
    const auto isUnread = !delivery.error.isEmpty();
    waiting->setText(
        isUnread ? tr("Messages: the disk cannot be read")
                 : tr("Messages waiting: %1, since %2")
                       .arg(QString::number(delivery.waiting), timeLabel(delivery.oldestWaiting)));
    waiting->setVisible(isUnread || delivery.waiting > 0);
    mark(waiting, "state", isUnread ? bad : attention);
    refused->setText(tr("Orders refused: %1 ▸").arg(delivery.refused));
    refused->setVisible(delivery.refused > 0);
}

void StateLine::showUnstored(qsizetype receipts)
{
    unstored->setText(tr("Receipts not saved: %1").arg(receipts));
    unstored->setVisible(receipts > 0);
}

void StateLine::showBadGoods(qsizetype lines)
{
    badGoods->setText(tr("Goods file errors: %1 ▸").arg(lines));
    badGoods->setVisible(lines > 0);
}

} // namespace till
