#include "scriptedconsole.h"

#include <gtest/gtest.h>

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
        EXPECT_EQ(scripted.console.readCommand({}).text, QStringLiteral("next"));
        EXPECT_EQ(scripted.console.readCommand({}).kind, Kind::End);
    }
}

TEST(Console, KeepsForeignTextsFromCommandingTheTerminal)
{
    ScriptedConsole scripted;
    scripted.console.line(QStringLiteral("a\x1b[2J\nb"));
    EXPECT_EQ(scripted.shown(), "a?[2J\nb\n");
}

} // namespace
