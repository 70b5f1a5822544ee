#include "wizard/MapWizard.h"
#include "model/FieldIndexes.h"
#include "model/FieldNames.h"

#include "maps/MapRotation.h"
#include "platform/Prompts.h"
#include "support/AppContext.h"
#include "model/Constants.h"
#include "model/ServerProfile.h"
#include "support/Errors.h"
#include "support/FileDialog.h"
#include "support/Strings.h"
#include "wizard/AdvancedCycleSave.h"

#include <algorithm>
#include <cmath>

namespace steward {

namespace {
const QString kCell = QStringLiteral("%1 %2");

QString switchText(const Field& box) { return box.tag() + (box.isSet() ? QStringLiteral(" 1") : QStringLiteral(" 0")); }
QString limitText(const Field& box) { return kCell.arg(box.tag(), box.text()); }
} // namespace

MapWizard::MapWizard(AppContext& app, WizardWindows& windows) : m_app(app), m_windows(windows) {}

Field& MapWizard::grid() { return m_fields.field(W::grdMapList); }

void MapWizard::guarded(const std::function<void()>& handler)
{
    try {
        handler();
    } catch (const RuntimeError& e) {
        const QString source = e.source().isEmpty() ? m_app.programName : e.source();
        m_app.prompts().message(e.description(), source, Icon::Exclamation);
    }
}

void MapWizard::ID_MapWizard(ServerProfile& mainProfile)
{
    if (!prepareMapWizard(m_app, mainProfile, m_state))
        return;
    m_main = &mainProfile;
    m_windows.hideMainWindow();
    show(1);
}

void MapWizard::show(int page)
{
    if (!m_loaded.at(page - 1)) {
        // A page loads with its design defaults; from then on it keeps its values.
        m_loaded[page - 1] = true;
        for (Field* field : m_fields.page(page))
            field->reset();
        if (page == 1) {
            m_fields.field(W::cmdNext).setEnabled(false);
            loadPage1();
        } else if (page == 2) {
            m_fields.field(W::chkWizardDuelNoWeapons).setVisible(m_fields.field(F::optDefaultGameType(3)).isSet());
        }
    }
    m_windows.showPage(page);
}

void MapWizard::hide(int page) { m_windows.hidePage(page); }

void MapWizard::loadPage1()
{
    // The message of the day is shown for reading only: it isn't stored per map.
    m_fields.field(W::txtMOTD).setText(m_main ? m_main->text(F::txtServerConfig(ServerBox::Motd)) : QString());
    Field& maps = grid();
    maps.setTag(QString());
    QList<QStringList> rows;
    for (int row = 0; row <= m_state.upper; ++row)
        rows << QStringList{m_state.records.at(row).MapName, QString::number(row), QString(), QString(),
                            kMarkNotSelected};
    maps.setRows(rows);
}

void MapWizard::grdMapList_Click(int row)
{
    guarded([&] {
        Field& maps = grid();
        if (row < 0 || row >= maps.count())
            return;
        if (!maps.tag().isEmpty()) {
            const int marked = maps.tag().toInt();
            if (marked >= 0 && marked < maps.count())
                setRotationMark(maps, marked, kMarkNotSelected);
        }
        setRotationMark(maps, row, kMarkSelected);
        maps.setCurrent(row);
        maps.setTag(QString::number(row));
        m_fields.field(W::cmdNext).setEnabled(true);
    });
}

bool MapWizard::popupOpens() const { return m_fields.field(W::grdMapList).count() > 0; }

void MapWizard::runPopupTool(const QString& toolId)
{
    guarded([&] {
        Field& maps = grid();
        if (toolId == QLatin1String("ID_SetStartingMap")) {
            const int row = currentRotationRow(maps);
            if (row < 0)
                return;
            m_state.startingMap = maps.cell(row, 0);
            m_app.prompts().message(m_state.startingMap + QStringLiteral(" has been set as the starting map") + kTail,
                                    kProductTitle, Icon::Information);
        } else if (toolId == QLatin1String("ID_SortAscending") || toolId == QLatin1String("ID_SortDescending")) {
            if (maps.count() < 1)
                return;
            const bool ascending = toolId == QLatin1String("ID_SortAscending");
            QList<QStringList> rows = maps.rows();
            std::stable_sort(rows.begin(), rows.end(), [ascending](const QStringList& a, const QStringList& b) {
                const int order = QString::compare(a.value(0), b.value(0), Qt::CaseSensitive);
                return ascending ? order < 0 : order > 0;
            });
            maps.setRows(rows);
        }
    });
}

void MapWizard::optDefaultGameType_Click(int index)
{
    m_fields.field(W::chkWizardDuelNoWeapons).setVisible(index == 3);
}

void MapWizard::cmdNext_Click(int page)
{
    guarded([&] {
        if (page == 1) {
            Field& maps = grid();
            const int row = maps.tag().toInt();
            // The row's own number stands in its second column, so a sorted grid still
            // finds its record.
            const int record = maps.cell(row, 1).toInt();
            if (record < 0 || record >= m_state.records.size())
                raiseError(err::SubscriptOutOfRange);
            if (m_state.records.at(record).Configured) {
                const QString question = QStringLiteral("This map has already been selected, continue?") + kTail +
                                         kCrLf + QStringLiteral("WARNING - All previous settings will be removed") +
                                         kTail;
                if (m_app.prompts().message(question, kProductTitle, Icon::Question, Buttons::YesNo) == Answer::No) {
                    setRotationMark(maps, row, kMarkNotSelected);
                    return;
                }
            }
            m_state.records[record].Configured = true;
            m_state.current = record;
            hide(1);
            show(2);
        } else if (page == 2) {
            WizardMapRecord& r = m_state.records[m_state.current];
            for (int i = 0; i <= 6; ++i) {
                const Field& option = m_fields.field(F::optDefaultGameType(i));
                if (option.isSet()) {
                    r.GameType = QStringLiteral("g_gametype ") + option.tag();
                    r.DuelNoWeapons = m_fields.field(W::chkWizardDuelNoWeapons).isSet();
                    break;
                }
            }
            int flags = 0;
            for (int i = 0; i <= 2; ++i) {
                const Field& box = m_fields.field(F::chkDMFlags(i));
                if (box.isSet())
                    flags += box.tag().toInt();
            }
            r.DmFlags = QStringLiteral("dmflags ") + QString::number(flags);
            hide(2);
            show(3);
        }
    });
}

void MapWizard::cmdBack_Click(int page)
{
    guarded([&] {
        hide(page);
        show(page - 1);
    });
}

void MapWizard::storePage3()
{
    WizardMapRecord& r = m_state.records[m_state.current];
    auto limit = [this](int i) { return limitText(m_fields.field(F::txtGameLimits(i))); };
    r.TimeLimit = limit(1);
    r.CaptureLimit = limit(3);
    r.DuelFragLimit = limit(2);
    r.FragLimit = limit(0);
    r.FriendlyFire = switchText(m_fields.field(F::chkQuake3Specific(5)));
    r.Warmup = QStringLiteral("g_warmup ") + m_fields.field(W::txtWarmup(1)).text();
    r.Gravity = limitText(m_fields.field(F::txtSpeed(1)));
    r.RunSpeed = limitText(m_fields.field(F::txtSpeed(0)));
    r.PrivateDuel = switchText(m_fields.field(F::chkQuake3Specific(11)));
    r.SaberLock = switchText(m_fields.field(F::chkQuake3Specific(15)));
    r.FriendlySaber = switchText(m_fields.field(F::chkQuake3Specific(16)));
    r.ForceDisabled = m_fields.field(F::chkQuake3Specific(0)).isSet();
}

void MapWizard::cmdNextMap_Click()
{
    guarded([&] {
        storePage3();
        hide(3);
        Field& maps = grid();
        for (int row = 0; row < maps.count(); ++row)
            setRotationMark(maps, row, kMarkNotSelected);
        maps.setTag(QString());
        show(1);
    });
}

void MapWizard::cmdFinish_Click()
{
    guarded([&] {
        storePage3();
        CFileDialog dialog(m_app);
        dialog.DialogTitle = QStringLiteral("Save Advanced Map Cycle");
        dialog.Flags = 2;
        dialog.Filter = QStringLiteral("JK2 Advanced Map Cycle (*.cfg)|*.cfg");
        dialog.InitialDir = m_app.baseFolder();
        dialog.FileName = QString();
        dialog.Show(false);
        const QString path = dialog.FileName;
        if (path.isEmpty())
            return;
        if (saveAdvancedMapCycle(m_app, m_state, path, dialog.FileTitle)) {
            m_app.prompts().message(QStringLiteral("File has been Saved") + kTail, QStringLiteral("Advanced Map Cycle"),
                                    Icon::Information);
            if (m_main) {
                // The saved cycle's own click would ask for a file: it stands aside, so the
                // box is set without it.
                m_main->setText(F::txtServerINI, path);
                m_main->setValue(F::chkUseINI, 1);
                m_main->field(F::lsvMapRotation).setRows({});
            }
        }
        UnloadWizards();
        m_app.prompts().processEvents();
        m_windows.showMainWindow();
    });
}

void MapWizard::cmdCancel_Click()
{
    guarded([&] {
        if (m_app.prompts().message(QStringLiteral("Do you want to cancel the wizard?") + kTail, kProductTitle,
                                    Icon::Question, Buttons::YesNo) != Answer::Yes)
            return;
        UnloadWizards();
        m_app.prompts().processEvents();
        m_windows.showMainWindow();
    });
}

void MapWizard::UnloadWizards()
{
    for (int page = 1; page <= 3; ++page) {
        if (!m_loaded.at(page - 1))
            continue;
        m_loaded[page - 1] = false;
        try {
            m_windows.unloadPage(page);
        } catch (...) {
            // Failures are ignored here.
        }
    }
}

} // namespace steward
