// A start's own copy of its settings gives back the exact texts of the boxes, which the
// store's own keys change (an empty box into a blank, a comma into "%").
#include "model/FieldIndexes.h"
#include "model/ServerProfile.h"
#include "settings/MemorySettingsStore.h"
#include "settings/StartKeys.h"
#include "testkit/Printers.h"

#include <gtest/gtest.h>

using namespace steward;

TEST(ExactTexts, TextAndComboBoxesComeBackAsTheyStood)
{
    ServerProfile started;
    started.setText(F::txtServerConfig(ServerBox::Address), QString());
    started.setText(F::txtServerConfig(ServerBox::HostName), QStringLiteral("Luke's, 100% \"fair\""));
    started.setText(F::cboConfig(0), QStringLiteral("my server.cfg"));
    MemorySettingsStore store;
    saveExactTexts(store, started);
    store.SaveSetting(QStringLiteral("Exact txtNoSuchBox(3)"), QStringLiteral("x")); // names no field: left alone

    ServerProfile restored;
    restored.setText(F::txtServerConfig(ServerBox::Address), QStringLiteral(" "));
    restored.setText(F::cboConfig(0), QStringLiteral("other.cfg"));
    restoreExactTexts(store, restored);
    for (FieldId id :
         {F::txtServerConfig(ServerBox::Address), F::txtServerConfig(ServerBox::HostName), F::cboConfig(0)})
        EXPECT_EQ(restored.text(id), started.text(id)) << id.name << "(" << id.index << ")";
}
