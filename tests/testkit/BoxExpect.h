#pragma once
// One call checks a whole message box: title, icon, text and buttons.
//   EXPECT_TRUE(isBox(t.prompts.last(), {"Title", Icon::Question, "Text?", Buttons::YesNo}));
#include "platform/Prompts.h"
#include "testkit/Fakes.h"

#include <gtest/gtest.h>

namespace steward::testing {

struct Box {
    QString title;
    Icon icon = Icon::None;
    QString text;
    Buttons buttons = Buttons::Ok;
};

::testing::AssertionResult isBox(const MessageBoxRequest& shown, const Box& expected);
inline ::testing::AssertionResult isBox(const FakePrompts::Shown& shown, const Box& expected)
{
    return isBox(shown.request, expected);
}

} // namespace steward::testing
