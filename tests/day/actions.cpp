#include "day.h"

#include <host/config.h>

#include <array>

namespace day {

namespace {

constexpr int64_t anHour = 3'600'000;

} // namespace

const std::vector<Action> actions{
    {"open a sale", 4, [](Day &day) { day.sale().open(DocumentHeader::sale); }},
    {"open a return", 1, [](Day &day) { day.sale().open(DocumentHeader::returned); }},
    {"add", 24,
     [](Day &day) {
         day.sale().add(QString::number(day.random.below(9000)), u"Milk"_s,
                        day.random.below(99999) / 100.0,
                        std::array{1.0, 2.0, 0.345}.at(day.random.below(3)));
     }},
    {"change", 4,
     [](Day &day) { day.sale().changeQuantity(day.anyPosition(), 1 + day.random.below(5)); }},
    {"remove", 3, [](Day &day) { day.sale().remove(day.anyPosition()); }},
    {"discount", 5,
     [](Day &day) {
         day.sale().discount(day.anyPosition(), day.random.below(300) / 100.0,
                             1 + day.random.below(9), day.random.below(2) * 6, day.random.below(2));
     }},
    {"card", 10,
     [](Day &day) {
         day.sale().enterCard(QString::number(day.random.below(3) == 0
                                                  ? 79'000'000'000 + day.random.below(99)
                                                  : 79'160'000'001 + day.random.below(2)));
     }},
    {"edit", 3, [](Day &day) { day.sale().trigger(170); }},
    {"take off", 2, [](Day &day) { day.sale().clearLoyaltyData(); }},
    {"commit", 14, [](Day &day) { day.sale().commit(); }},
    {"cancel", 4, [](Day &day) { day.sale().cancel(); }},
    {"close the shift", 1, [](Day &day) { day.sale().closeShift(); }},
    {"report again", 3, [](Day &day) { day.reportAny(); }},
    {"rush", 1, [](Day &day) { day.rush(); }},
    {"deliver one", 8, [](Day &day) { day.deliver(1); }},
    {"deliver", 5, [](Day &day) { day.deliver(1000); }},
    {"deliver elsewhere", 2, [](Day &day) { day.deliverElsewhere(); }},
    {"park", 1, [](Day &day) { day.park(); }},
    {"retry", 1, [](Day &day) { day.unparkAll(); }},
    {"retention", 1, [](Day &day) { day.removeOld(); }},
    {"settings", 1,
     [](Day &day) {
         Singleton<Config>::instance()->set(u"Till:keepDays"_s,
                                            QString::number(30 + day.random.below(60)));
     }},
    {"quit", 1, [](Day &day) { day.quit(); }},
    {"kill", 3, [](Day &day) { day.die(false); }},
    {"power cut", 2, [](Day &day) { day.die(true); }},
    {"damage", 1, [](Day &day) { day.damage(); }},
    {"disk fault", 3,
     [](Day &day) {
         const auto after = day.random.below(20);
         disk.fail(static_cast<FaultyDisk::Fault>(1 + day.random.below(3)), after,
                   std::array{1, 1 + day.random.below(20), 0}.at(day.random.below(3)));
     }},
    {"disk mended", 4, [](Day & /*day*/) { disk.fail(FaultyDisk::Fault::None); }},
    {"service", 5,
     [](Day &day) {
         day.service.mood = static_cast<Service::Mood>(day.random.below(Service::moods));
         day.service.percent = 20 + 40 * day.random.below(3);
     }},
    {"time", 3, [](Day &day) { day.passTime(day.random.below(40) * anHour); }},
    {"weeks", 1, [](Day &day) { day.passWeeks(); }},
    {"clock", 1,
     [](Day &day) {
         day.clockOffset =
             std::array{anHour, -anHour, -aDay, 3650 * aDay, -7300 * aDay}.at(day.random.below(5));
     }},
};

} // namespace day
