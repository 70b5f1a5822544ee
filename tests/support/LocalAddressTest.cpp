#include "model/Constants.h"
#include "model/ServerProfile.h"
#include "commands/AddressCommand.h"
#include "support/LocalAddress.h"
#include "testkit/BoxExpect.h"
#include "testkit/TestApp.h"

#include <gtest/gtest.h>
#include <optional>

using namespace steward;
using namespace steward::testing;
using namespace Qt::StringLiterals;

namespace {

/// A host whose name and addresses the test decides.
class ScriptedLookup : public AddressLookup {
public:
    bool hostName(QString& name, int& error) override
    {
        if (nameError) {
            error = *nameError;
            return false;
        }
        name = host;
        return true;
    }
    QList<QByteArray> addresses(const QString& name) override
    {
        askedFor = name;
        return found;
    }
    QList<QByteArray> interfaceAddresses() override { return cards; }

    QString host = u"  gamebox \t"_s;
    std::optional<int> nameError;
    QList<QByteArray> found;
    QList<QByteArray> cards;
    QString askedFor;
};

QByteArray bytes(std::initializer_list<int> values)
{
    QByteArray b;
    for (int v : values)
        b.append(static_cast<char>(v));
    return b;
}

} // namespace

TEST(LocalAddress, TheFirstAddressOfTheTrimmedNameInDottedForm)
{
    TestApp t;
    ScriptedLookup lookup;
    lookup.found = {bytes({192, 168, 0, 7}), bytes({10, 0, 0, 1})};
    EXPECT_EQ(GetIPAddress(*t.app, lookup), u"192.168.0.7"_s);
    EXPECT_EQ(lookup.askedFor, u"gamebox"_s);
    lookup.found = {bytes({255, 0, 10, 200})};
    EXPECT_EQ(GetIPAddress(*t.app, lookup), u"255.0.10.200"_s) << "no leading zeros, no sign";
    EXPECT_TRUE(t.prompts.shown.empty());
}

TEST(LocalAddress, FailuresArePlainBoxesTitledWithTheProgramsName)
{
    struct Case {
        std::optional<int> nameError;
        QString text;
    };
    const Case cases[] = {
        {10093, u"Windows Sockets error  10093 has occurred. Unable to successfully get Host Name."_s},
        {-3, u"Windows Sockets error -3 has occurred. Unable to successfully get Host Name."_s},
        {std::nullopt, u"Windows Sockets are not responding. Unable to successfully get Host Name."_s},
    };
    for (const Case& c : cases) {
        TestApp t;
        ScriptedLookup lookup;
        lookup.nameError = c.nameError;
        EXPECT_EQ(GetIPAddress(*t.app, lookup), QString());
        ASSERT_EQ(t.prompts.shown.size(), 1u);
        const MessageBoxRequest& box = t.prompts.last().request;
        EXPECT_TRUE(isBox(box, {u"arena-steward"_s, Icon::None, c.text + kTail, Buttons::Ok}));
    }
}

TEST(LocalAddress, TheButtonFillsTheFieldUnderTheHourglassAndHandsItTheFocus)
{
    TestApp t;
    ServerProfile p;
    ScriptedLookup lookup;
    lookup.found = {bytes({127, 0, 1, 1})};
    Field& focus = cmdIP_Click(*t.app, p, lookup);
    EXPECT_EQ(&focus, &p.field(F::txtServerConfig(16)));
    EXPECT_EQ(focus.text(), u"127.0.1.1"_s);
    EXPECT_EQ(t.prompts.pointerHistory, std::vector<int>({pointer::Hourglass, pointer::Default}));
}

TEST(LocalAddress, AFailedLookupEmptiesTheField)
{
    TestApp t;
    ServerProfile p;
    p.setText(F::txtServerConfig(16), u"10.9.8.7"_s);
    ScriptedLookup lookup;
    Field& focus = cmdIP_Click(*t.app, p, lookup);
    EXPECT_EQ(focus.text(), QString());
    EXPECT_EQ(focus.key(), u"txtServerConfig(16)"_s);
    EXPECT_EQ(t.prompts.shown.size(), 1u);
    EXPECT_EQ(t.prompts.pointer, pointer::Default);
}

TEST(LocalAddress, ANameThatGivesLoopbackOnlyTakesTheFirstCardThatIsUp)
{
    TestApp t;
    ScriptedLookup lookup;
    lookup.found = {bytes({127, 0, 1, 1}), bytes({127, 0, 0, 1})};
    lookup.cards = {bytes({192, 168, 4, 20}), bytes({10, 0, 0, 3})};
    EXPECT_EQ(GetIPAddress(*t.app, lookup), u"192.168.4.20"_s);

    lookup.cards.clear();
    EXPECT_EQ(GetIPAddress(*t.app, lookup), u"127.0.1.1"_s) << "no card up: the loopback address stays";

    lookup.found = {bytes({127, 0, 1, 1}), bytes({172, 16, 0, 9})};
    lookup.cards = {bytes({192, 168, 4, 20})};
    EXPECT_EQ(GetIPAddress(*t.app, lookup), u"127.0.1.1"_s)
        << "a name that also gives an outside address keeps the lookup's first";
    EXPECT_TRUE(t.prompts.shown.empty());
}
