#include "scriptedconsole.h"

#include "till/console/consolepresenter.h"
#include "till/words/receipttext.h"
#include "till/words/saletext.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

using Kind = till::ConsoleLine::Kind;

TEST(Console, RefusesWhatIsNoTextAndGoesOnWithTheNextLine)
{
    const QByteArray longest(till::Console::maximumLineLength, 'x');
    const std::pair<QByteArray, Kind> cases[] = {
        {"", Kind::Text},
        {"Молоко\r", Kind::Text},
        {longest, Kind::Text},
        {longest + 'x', Kind::Refused},
        {longest + longest, Kind::Refused},
        {"\xD0", Kind::Refused},
        {QByteArray("a\0b", 3), Kind::Refused},
        {"\x1b[2J", Kind::Refused},
    };
    for (const auto &[line, kind] : cases) {
        SCOPED_TRACE(line.left(20).toStdString());
        ScriptedConsole scripted(line + "\nnext");
        EXPECT_EQ(scripted.console.readCommand({}).kind, kind);
        EXPECT_EQ(scripted.console.readCommand({}).text, u"next"_s);
        EXPECT_EQ(scripted.console.readCommand({}).kind, Kind::End);
    }
}

TEST(Console, HasWordsForEveryEventButOneAndEveryObstacle)
{
    using Event = till::SaleEvent::Kind;
    till::SaleEvent event;
    for (int kind = 0; kind <= static_cast<int>(Event::Refused); ++kind) {
        event.kind = static_cast<Event>(kind);
        EXPECT_EQ(till::eventText(event, {}).isEmpty(), event.kind == Event::Identified) << kind;
    }
    for (int obstacle = 0; obstacle <= static_cast<int>(till::Obstacle::UnknownReceipt);
         ++obstacle) {
        event.obstacle = static_cast<till::Obstacle>(obstacle);
        EXPECT_FALSE(till::eventText(event, {}).isEmpty()) << obstacle;
    }
}

TEST(Console, WritesWhatAServiceSaysInOneLine)
{
    const auto forged = u"Anna\nReceipt 99 is closed: 0.00.\u2028x"_s;
    till::ReceiptView receipt;
    receipt.cardNumber = u"1"_s;
    receipt.customer = Client();
    receipt.customer->setName(forged);
    till::SaleEvent refused;
    refused.text = forged;
    till::SaleEvent added{till::SaleEvent::Kind::PositionAdded};
    added.position.name = forged;
    for (const auto &text :
         {till::holderText(receipt), till::eventText(refused, {}), till::eventText(added, {})}) {
        EXPECT_FALSE(text.contains(u'\n') || text.contains(QChar(0x2028))) << text.toStdString();
        EXPECT_TRUE(text.contains(u"Anna?Receipt 99"_s)) << text.toStdString();
    }
    ScriptedConsole scripted;
    till::ConsolePresenter(scripted.console).showError({{}, forged});
    EXPECT_EQ(scripted.shown(), "[error] Anna?Receipt 99 is closed: 0.00.?x\n");
}

} // namespace
