#include "ui/BotPage.h"

#include "bots/BotPicker.h"
#include "bots/BotRoster.h"
#include "generate/BotSkills.h"
#include "model/ServerProfile.h"
#include "ui/FieldWidgets.h"
#include "ui/WordColumns.h"
#include "ui/frmMain.h"

#include <QBrush>
#include <QTableWidget>

namespace steward {

namespace {

/// Paints every row of the shown roster in its team's colours; row r of the table is
/// row r + 1 of the field, below the heading.
void colourRows(QTableWidget& table, const Field& grid)
{
    for (int r = 0; r < table.rowCount(); ++r) {
        const RosterRowColours colours = rosterRowColours(grid.cell(r + 1, 2));
        for (int c = 0; c < table.columnCount(); ++c) {
            QTableWidgetItem* item = table.item(r, c);
            if (!item)
                continue;
            item->setBackground(QBrush(QColor::fromRgb(colours.background)));
            item->setForeground(QBrush(QColor::fromRgb(colours.text)));
        }
    }
}

} // namespace

void bindBotPage(AppContext& app, frmMain& window)
{
    Q_UNUSED(app);
    ServerProfile& profile = window.profile();
    auto* table = window.control<QTableWidget>(QStringLiteral("grdBOTList"));
    if (!table)
        return;
    Field& grid = profile.field(F::grdBOTList);
    // Skill and team are always one of a few words: their columns show them whole.
    auto* words = new WordColumns(table);
    words->add(1, botSkillNames());
    words->add(2, botTeams());

    // The table fills itself first on the same signal, then the colours go on.
    QObject::connect(&grid, &Field::rowsChanged, table, [table, &grid] { colourRows(*table, grid); });
    colourRows(*table, grid);

    if (FieldPresence* presence = FieldPresence::of(table))
        for (int i = 0; i <= 4; ++i)
            if (QWidget* button = window.control(QStringLiteral("cmdBOTs(%1)").arg(i)))
                presence->addCompanion(button);

    // The page's layout follows the box, also when code sets it (the stored settings).
    Field& userDefined = profile.field(F::chkBOTs(5));
    auto layOut = [table, &profile] {
        chkBOTs_Click(profile, 5);
        const BotPageLayout layout = botPageLayout(profile.value(F::chkBOTs(5)) == 1);
        // The page's grid layout places the table; its design position is kept beside it.
        table->setProperty("Left", layout.rosterPosition.x());
        table->setProperty("Top", layout.rosterPosition.y());
    };
    QObject::connect(&userDefined, &Field::valueChanged, table, layOut);
    layOut();
}

} // namespace steward
