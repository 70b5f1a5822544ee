#include "model/ServerProfile.h"
#include "testkit/TestApp.h"
#include "wizard/WizardRecords.h"

#include <gtest/gtest.h>

using namespace steward;

TEST(MapWizardStart, AnEmptyRotationOnlyTellsTheUser)
{
    steward::testing::TestApp t;
    ServerProfile profile;
    WizardState state;
    state.upper = 7;
    EXPECT_FALSE(prepareMapWizard(*t.app, profile, state));
    ASSERT_EQ(t.prompts.shown.size(), 1u);
    EXPECT_EQ(t.prompts.last().request.text,
              QStringLiteral("There are no maps in the list, please select at least one map         "));
    EXPECT_EQ(t.prompts.last().request.icon, Icon::Information);
    EXPECT_EQ(state.upper, 7) << "nothing is prepared";
}

TEST(MapWizardStart, EachRowGetsItsNameAndTheSelectedGameType)
{
    steward::testing::TestApp t;
    ServerProfile profile;
    Field& rotation = profile.field(F::lsvMapRotation);
    rotation.setRows({{QStringLiteral("ffa_bespin")}, {QStringLiteral("ctf_yavin")}, {QStringLiteral("ffa_bespin")}});
    profile.setValue(F::optDefaultGameType(5), 1);
    profile.setStartingMap(QStringLiteral("ctf_yavin"));

    WizardState state;
    ASSERT_TRUE(prepareMapWizard(*t.app, profile, state));
    EXPECT_EQ(state.upper, 2);
    ASSERT_EQ(state.records.size(), 3);
    EXPECT_EQ(state.records[2].MapName, QStringLiteral("ffa_bespin"));
    for (const WizardMapRecord& r : state.records) {
        EXPECT_EQ(r.GameType, QStringLiteral("g_gametype 7"));
        EXPECT_FALSE(r.Configured);
    }
    EXPECT_TRUE(state.startingMap.isEmpty()) << "the main window's starting map isn't the wizard's";
    EXPECT_EQ(t.prompts.eventRuns, 1);
}
