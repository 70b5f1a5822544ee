#include "testkit/BoxExpect.h"

namespace steward::testing {

namespace {
const char* iconName(Icon icon)
{
    static const char* const names[] = {"None", "Information", "Exclamation", "Critical", "Question"};
    return names[static_cast<int>(icon)];
}

const char* buttonsName(Buttons buttons)
{
    static const char* const names[] = {"Ok", "OkCancel", "YesNo", "YesNoCancel", "RetryCancel", "AbortRetryIgnore"};
    return names[static_cast<int>(buttons)];
}

std::string describe(const QString& title, Icon icon, const QString& text, Buttons buttons)
{
    return "{\"" + title.toStdString() + "\", " + iconName(icon) + ", \"" + text.toStdString() + "\", " +
           buttonsName(buttons) + "}";
}
} // namespace

::testing::AssertionResult isBox(const MessageBoxRequest& shown, const Box& expected)
{
    if (shown.title == expected.title && shown.icon == expected.icon && shown.text == expected.text &&
        shown.buttons == expected.buttons)
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "the box is "
                                         << describe(shown.title, shown.icon, shown.text, shown.buttons)
                                         << "\n  expected "
                                         << describe(expected.title, expected.icon, expected.text, expected.buttons);
}

} // namespace steward::testing
