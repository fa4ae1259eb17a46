#include "support.h"

#include <host/logging.h>
#include <host/privatefile.h>

#include <fcntl.h>
#include <unistd.h>

class PrivateFile : public WithFiles
{
protected:
    /// Expects every operation to refuse the file; the errors must name it.
    static void expectRefused(const QString &trap)
    {
        SCOPED_TRACE(trap.toStdString());
        for (const auto flags : {O_RDONLY | O_CREAT, O_WRONLY | O_APPEND | O_CREAT, O_RDWR})
            EXPECT_EQ(privatefile::open(trap, flags), -1) << flags;
        const auto examined = privatefile::examine(trap);
        ASSERT_FALSE(examined);
        EXPECT_TRUE(examined.error().contains(trap));
        EXPECT_EQ(privatefile::write(trap, "new").error(), examined.error());
        const auto log = logging::start(trap, false);
        ASSERT_FALSE(log);
        EXPECT_EQ(log.error(), examined.error());
    }
};

TEST_F(PrivateFile, IsNoLinkPipeDirectoryOrDevice)
{
    const auto target = write(u"target"_s, "kept", 0644);
    const auto pipe = path(u"pipe"_s);
    const auto nothing = path(u"nothing"_s);
    ASSERT_TRUE(QFile::link(target, path(u"link"_s)));
    ASSERT_TRUE(QFile::link(nothing, path(u"dangling"_s)));
    ASSERT_EQ(::mkfifo(qPrintable(pipe), 0600), 0);
    for (const auto &trap : {path(u"link"_s), path(u"dangling"_s), pipe, path({}), u"/dev/null"_s})
        expectRefused(trap);
    EXPECT_EQ(read(target), "kept");
    EXPECT_EQ(mode(target), 0644U);
    EXPECT_FALSE(QFile::exists(nothing));
    EXPECT_FALSE(privatefile::read(pipe, 9));
}

TEST_F(PrivateFile, BelongsToTheUserOrToTheOneWhoseDirectoryItIsIn)
{
    if (::geteuid() != 0)
        GTEST_SKIP() << "only root gives files away";
    constexpr uid_t somebody = 12345;
    const auto file = write(u"file"_s, "kept");
    ASSERT_EQ(::chown(qPrintable(file), somebody, somebody), 0);
    expectRefused(file);
    ASSERT_EQ(::chown(qPrintable(path({})), somebody, somebody), 0);
    EXPECT_TRUE(privatefile::examine(file));
}

TEST_F(PrivateFile, IsReplacedAsAWholeAndNarrowed)
{
    const auto file = write(u"file"_s, "old", 0666);
    for (const auto &name : {file, path(u"another"_s)}) {
        EXPECT_TRUE(privatefile::write(name, "new"));
        EXPECT_EQ(read(name), "new");
        EXPECT_EQ(mode(name), 0600U);
    }
    {
        const FullDisk full(2);
        EXPECT_FALSE(privatefile::write(file, "more than fits"));
    }
    EXPECT_EQ(read(file), "new");
    EXPECT_EQ(QDir(path({})).entryList(QDir::Files).size(), 2) << "a temporary file stayed";

    const auto open = write(u"open"_s, "kept", 0666);
    const auto descriptor = privatefile::open(open, O_RDONLY);
    EXPECT_GE(descriptor, 0);
    ::close(descriptor);
    EXPECT_EQ(mode(open), 0600U);
}
