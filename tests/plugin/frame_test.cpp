#include "workflow.h"

namespace {
bool baseInit = true;
} // namespace

// Replaces the host library's own, so that a test can check the call and its result.
bool BasicPlugin::init()
{
    return baseInit;
}

namespace lmmindbox {
namespace {

class Frame : public WorkflowTest
{};

TEST_F(Frame, InitRegistersTheEditActionsHandlerAndAnswersAsItsBase)
{
    EXPECT_TRUE(plugin.init());
    EXPECT_EQ(around.seen(), QStringList(u"I Инициализация системы лояльности"_s));
    ASSERT_EQ(plugin.getHandlers().size(), 1);
    const auto &handler = plugin.getHandlers().first();
    EXPECT_EQ(handler.context, 6);
    EXPECT_EQ(handler.actionCode, 170);
    EXPECT_TRUE(handler.enabled);
    around.inputs = {QVariant()};
    EXPECT_EQ(plugin.handle(control::Action(170)), EContext::Result{3});
    EXPECT_EQ(around.seen().first(), u"I Редактирование данных клиента"_s);

    baseInit = false;
    EXPECT_FALSE(plugin.init());
    baseInit = true;
}

TEST_F(Frame, VariantsFindTheRecordsByName)
{
    for (const auto *name : {"lmmindbox::Customer", "lmmindbox::CustomerEdit", "Client::Sex"})
        EXPECT_TRUE(QMetaType::fromName(name).isValid()) << name;
}

} // namespace
} // namespace lmmindbox
