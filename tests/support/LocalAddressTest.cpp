// The computer's own address for the address button: the lookup of the trimmed host
// name, the cards that stand in for a loopback answer, and the failures' boxes.
#include "commands/AddressCommand.h"
#include "model/Constants.h"
#include "model/ServerProfile.h"
#include "support/LocalAddress.h"
#include "testkit/BoxExpect.h"
#include "testkit/TestApp.h"

#include <QHostAddress>
#include <QtEndian>
#include <gtest/gtest.h>
#include <optional>

using namespace steward;
using namespace steward::testing;
using namespace Qt::StringLiterals;

namespace {

/// An address as the lookup gives it: four bytes.
QList<QByteArray> ips(std::initializer_list<const char*> dotted)
{
    QList<QByteArray> found;
    for (const char* d : dotted) {
        const quint32 a = qToBigEndian(QHostAddress(QString::fromLatin1(d)).toIPv4Address());
        found.append(QByteArray(reinterpret_cast<const char*>(&a), 4));
    }
    return found;
}

/// A host whose name and addresses the test decides.
class ScriptedLookup : public AddressLookup {
public:
    bool hostName(QString& name, int& error) override
    {
        if (nameError)
            error = *nameError;
        else
            name = u"  gamebox \t"_s;
        return !nameError;
    }
    QList<QByteArray> addresses(const QString& name) override
    {
        askedFor = name;
        return found;
    }
    QList<QByteArray> interfaceAddresses() override { return cards; }

    std::optional<int> nameError;
    QList<QByteArray> found;
    QList<QByteArray> cards;
    QString askedFor;
};

class LocalAddress : public ::testing::Test {
protected:
    QString address() { return GetIPAddress(*t.app, lookup); }
    TestApp t;
    ScriptedLookup lookup;
};

TEST_F(LocalAddress, TheFirstAddressOfTheTrimmedNameAndACardForALoopbackOne)
{
    lookup.found = ips({"192.168.0.7", "10.0.0.1"});
    EXPECT_EQ(address(), u"192.168.0.7"_s);
    EXPECT_EQ(lookup.askedFor, u"gamebox"_s);
    lookup.found = ips({"255.0.10.200"});
    EXPECT_EQ(address(), u"255.0.10.200"_s) << "no leading zeros, no sign";

    // A name that gives loopback addresses only takes the first card that is up.
    lookup.found = ips({"127.0.1.1", "127.0.0.1"});
    lookup.cards = ips({"192.168.4.20", "10.0.0.3"});
    EXPECT_EQ(address(), u"192.168.4.20"_s);
    lookup.cards.clear();
    EXPECT_EQ(address(), u"127.0.1.1"_s) << "no card up: the loopback address stays";
    lookup.found = ips({"127.0.1.1", "172.16.0.9"});
    lookup.cards = ips({"192.168.4.20"});
    EXPECT_EQ(address(), u"127.0.1.1"_s) << "a name that also gives an outside address keeps the lookup's first";
    EXPECT_TRUE(t.prompts.shown.empty());
}

TEST(LocalAddressFailures, ArePlainBoxesTitledWithTheProgramsName)
{
    const std::pair<std::optional<int>, QString> cases[] = {
        {10093, u"Windows Sockets error  10093 has occurred. Unable to successfully get Host Name."_s},
        {-3, u"Windows Sockets error -3 has occurred. Unable to successfully get Host Name."_s},
        {std::nullopt, u"Windows Sockets are not responding. Unable to successfully get Host Name."_s},
    };
    for (const auto& [nameError, text] : cases) {
        TestApp t;
        ScriptedLookup lookup;
        lookup.nameError = nameError;
        EXPECT_EQ(GetIPAddress(*t.app, lookup), QString());
        ASSERT_EQ(t.prompts.shown.size(), 1u);
        EXPECT_TRUE(isBox(t.prompts.last(), {u"arena-steward"_s, Icon::None, text + kTail, Buttons::Ok}));
    }
}

TEST_F(LocalAddress, TheButtonFillsTheFieldUnderTheHourglassAndHandsItTheFocus)
{
    ServerProfile p;
    lookup.found = ips({"127.0.1.1"});
    Field& focus = cmdIP_Click(*t.app, p, lookup);
    EXPECT_EQ(&focus, &p.field(F::txtServerConfig(16)));
    EXPECT_EQ(focus.text(), u"127.0.1.1"_s);
    EXPECT_EQ(t.prompts.pointerHistory, std::vector<int>({pointer::Hourglass, pointer::Default}));

    // A failed lookup empties the field.
    lookup.found.clear();
    EXPECT_EQ(cmdIP_Click(*t.app, p, lookup).text(), QString());
    EXPECT_EQ(t.prompts.shown.size(), 1u);
    EXPECT_EQ(t.prompts.pointer, pointer::Default);
}

} // namespace
