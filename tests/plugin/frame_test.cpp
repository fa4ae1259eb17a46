#include "fakes.h"

namespace {
bool baseInit = true;
} // namespace

// Stands before the host library's own, to see that the base is asked and heard.
bool BasicPlugin::init()
{
    return baseInit;
}

namespace lmmindbox {
namespace {

using testing::Property;
using testing::Return;

class Frame : public WorkflowTest
{};

TEST_F(Frame, InitRegistersTheEditActionsHandlerAndAnswersAsItsBase)
{
    EXPECT_TRUE(stepped.init());
    EXPECT_EQ(LogCapture::take(), QStringList(u"I Инициализация системы лояльности"_s));
    ASSERT_EQ(stepped.getHandlers().size(), 1);
    const auto &handler = stepped.getHandlers().first();
    EXPECT_EQ(handler.context, 6);
    EXPECT_EQ(handler.actionCode, 170);
    EXPECT_TRUE(handler.enabled);
    for (const auto result : {EContext::Result{0}, EContext::Result{2}}) {
        EXPECT_CALL(stepped, editCustomer(Property(&control::Action::getType, 170)))
            .WillOnce(Return(result));
        EXPECT_EQ(stepped.handle(control::Action(170)), result);
    }

    baseInit = false;
    EXPECT_FALSE(plugin.init());
    baseInit = true;
}

TEST_F(Frame, ProgressIsShownByTheSession)
{
    class Display : public ProgressDisplay
    {
    public:
        MOCK_METHOD(void, setProgress, (const tr::Tr &, int), (override));
    };
    const auto display = QSharedPointer<testing::StrictMock<Display>>::create();
    Singleton<Session>::instance()->setProgressDisplay(display);
    EXPECT_CALL(*display, setProgress(isText("id", "text"), 60));
    plugin.setProgress({u"id"_s, u"text"_s}, 60);
    Singleton<Session>::instance()->setProgressDisplay(QSharedPointer<ProgressDisplay>::create());
}

TEST_F(Frame, VariantsFindTheRecordsByName)
{
    for (const auto *name : {"lmmindbox::Customer", "lmmindbox::CustomerEdit", "Client::Sex"})
        EXPECT_TRUE(QMetaType::fromName(name).isValid()) << name;
}

} // namespace
} // namespace lmmindbox
