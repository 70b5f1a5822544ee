#include "ui/ProfileMenu.h"

#include "commands/ProfileSet.h"
#include "settings/Profiles.h"

#include <QAction>
#include <QActionGroup>
#include <QMenu>
#include <QMenuBar>

namespace steward {

void buildProfileMenu(QMenuBar* bar, const ProfileSet& profiles, const ProfileChoice& chosen)
{
    QMenu* menu = bar->addMenu(QStringLiteral("&Profile"));
    menu->setObjectName(QStringLiteral("mnuProfile"));
    const struct {
        const char* id;
        const char* caption;
        const char* choice;
    } commands[] = {
        {"mnuProfileNew", "New Profile...", "new"},
        {"mnuProfileRename", "Rename Profile...", "rename"},
        {"mnuProfileDelete", "Delete Profile...", "delete"},
    };
    for (const auto& c : commands) {
        QAction* action = menu->addAction(QString::fromLatin1(c.caption));
        action->setObjectName(QString::fromLatin1(c.id));
        const QString choice = QString::fromLatin1(c.choice);
        QObject::connect(action, &QAction::triggered, menu, [chosen, choice] { chosen(choice); });
    }
    menu->addSeparator();
    auto* group = new QActionGroup(menu);
    group->setExclusive(true);
    const QString current = profiles.current().isEmpty() ? kDefaultProfile : profiles.current();
    for (const QString& name : profiles.names()) {
        QAction* action = menu->addAction(name);
        action->setObjectName(QStringLiteral("mnuProfile_") + name);
        action->setCheckable(true);
        action->setChecked(name == current);
        group->addAction(action);
        // A profile chosen again is no switch; the group keeps it checked.
        QObject::connect(action, &QAction::triggered, menu, [chosen, name] { chosen(name); });
    }
}

} // namespace steward
