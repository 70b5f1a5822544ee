#include "maps/MapRotation.h"

#include "maps/MapScanner.h"
#include "platform/Prompts.h"
#include "support/AppContext.h"
#include "model/Constants.h"
#include "model/ServerProfile.h"
#include "support/ErrorReporter.h"
#include "support/Errors.h"
#include "support/Strings.h"

#include <algorithm>
#include <cmath>

namespace steward {

namespace {
constexpr auto kGrid = F::lsvMapRotation;
constexpr auto kSelectedLabel = F::lblMapsSelected;

Field& grid(ServerProfile& profile) { return profile.field(kGrid); }

void showCount(ServerProfile& profile, const QString& wording)
{
    profile.setText(kSelectedLabel, QString::number(grid(profile).count()) + wording);
}

bool ask(AppContext& app, const QString& question)
{
    return app.prompts().message(question + kTail, kProductTitle, Icon::Question, Buttons::YesNo) == Answer::Yes;
}
} // namespace

QString firstMapType(const ServerProfile& profile) { return profile.text(F::FirstMapType); }

void setFirstMapType(ServerProfile& profile, const QString& type) { profile.setText(F::FirstMapType, type); }

void AddStandardMaps(AppContext& app, ServerProfile& profile, StockSet set)
{
    Field& rotation = grid(profile);
    if (rotation.count() > 0) {
        if (!ask(app, QStringLiteral("Clear Map list?")))
            return;
        rotation.setRows({});
        setFirstMapType(profile, QString());
        profile.setText(kSelectedLabel, QStringLiteral("0 Maps Selected"));
        setCheckFromCode(profile, F::chkUseINI, 0);
    }
    const StockSetInfo& info = stockSet(set);
    for (const StockMap& map : info.maps)
        rotation.addRow(rotationRow(map.mapName, map.longName, map.type));
    showCount(profile, QStringLiteral(" Selected Maps"));
    profile.setValue(F::optDefaultGameType(info.gameType), 1);
    profile.setConfigurationChanged(true);
}

void ID_SetStartingMap(AppContext& app, ServerProfile& profile)
{
    Field& rotation = grid(profile);
    const int row = currentRotationRow(rotation);
    if (row < 0)
        return;
    const QString map = rotation.cell(row, 0);
    profile.setStartingMap(map);
    // The Tag may point past the last row after removals; that mark is then skipped.
    const double marked = std::nearbyint(leadingNumber(rotation.tag()));
    if (marked >= 0 && marked < rotation.count())
        setRotationMark(rotation, static_cast<int>(marked), kMarkNotSelected);
    setRotationMark(rotation, row, kMarkSelected);
    rotation.setTag(QString::number(row));
    app.prompts().message(map + QStringLiteral(" has been set as the starting map") + kTail, kProductTitle,
                          Icon::Information);
}

namespace {
void sortRotation(ServerProfile& profile, bool ascending)
{
    Field& rotation = grid(profile);
    if (rotation.count() < 1)
        return;
    QList<QStringList> rows = rotation.rows();
    std::stable_sort(rows.begin(), rows.end(), [ascending](const QStringList& a, const QStringList& b) {
        const int order = QString::compare(a.value(0), b.value(0), Qt::CaseSensitive);
        return ascending ? order < 0 : order > 0;
    });
    rotation.setRows(rows);
}
} // namespace

void ID_SortAscending(ServerProfile& profile) { sortRotation(profile, true); }

void ID_SortDescending(ServerProfile& profile) { sortRotation(profile, false); }

void ID_RemoveMap(AppContext& app, ServerProfile& profile)
{
    Field& rotation = grid(profile);
    const int row = currentRotationRow(rotation);
    if (row < 0 || !ask(app, QStringLiteral("Remove Selected Map?")))
        return;
    rotation.removeRow(row);
    if (rotation.count() == 0) {
        setFirstMapType(profile, QString());
        profile.setText(kSelectedLabel, QStringLiteral("0 Maps Selected"));
    } else {
        showCount(profile, QStringLiteral(" Maps Selected"));
    }
}

void ID_ClearList(AppContext& app, ServerProfile& profile)
{
    if (!ask(app, QStringLiteral("Clear Map List?")))
        return;
    grid(profile).setRows({});
    setFirstMapType(profile, QString());
    profile.setText(kSelectedLabel, QStringLiteral("0 Maps Selected"));
    setCheckFromCode(profile, F::chkUseINI, 0);
    profile.setStartingMap(QString());
}

void ShowMapControls(ServerProfile& profile, bool visible)
{
    for (FieldId name : {F::tvwAvailMaps, F::picMap, F::lsvMapRotation, F::lblMapsSelected, F::lblNumberOfMapsAvailable,
                         F::lblMapType, F::lblLongMapName})
        profile.field(name).setVisible(visible);
}

namespace {
void swapRows(ServerProfile& profile, int a, int b)
{
    Field& rotation = grid(profile);
    QList<QStringList> rows = rotation.rows();
    rotation.cell(a, 0); // both rows must exist
    rotation.cell(b, 0);
    // The text moves; the mark pictures stay where they are.
    QStringList& first = rows[a];
    QStringList& second = rows[b];
    while (first.size() <= kMarkColumn)
        first << QString();
    while (second.size() <= kMarkColumn)
        second << QString();
    for (int c = 0; c < kMarkColumn; ++c)
        std::swap(first[c], second[c]);
    const int current = rotation.current();
    rotation.setRows(rows);
    rotation.setCurrent(current);
}
} // namespace

void m_MoveUpInList(AppContext& app, ServerProfile& profile, int index)
{
    try {
        if (index == 0)
            return;
        swapRows(profile, index, index - 1);
    } catch (const RuntimeError& e) {
        reportTagged(app, e, QStringLiteral("::frmMain.m_MoveUpInList(Sub)"));
    }
}

void m_MoveDownInList(AppContext& app, ServerProfile& profile, int index)
{
    try {
        if (index == grid(profile).count() - 1)
            return;
        swapRows(profile, index, index + 1);
    } catch (const RuntimeError& e) {
        reportTagged(app, e, QStringLiteral("::frmMain.m_MoveDownInList(Sub)"));
    }
}

bool rotationMenuOpens(const ServerProfile& profile) { return profile.field(kGrid).count() >= 1; }

} // namespace steward
