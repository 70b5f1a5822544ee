#include "ui/MenuBuilder.h"

#include <QAction>
#include <QApplication>
#include <QHash>
#include <QMenu>
#include <QMenuBar>
#include <QStyle>

namespace steward {

QIcon toolIcon(const QString& key)
{
    struct Look {
        const char* theme;
        QStyle::StandardPixmap fallback;
    };
    static const QHash<QString, Look> looks = {
        {QStringLiteral("MAPS"), {"folder-pictures", QStyle::SP_DirIcon}},
        {QStringLiteral("LOAD_MAPS"), {"list-add", QStyle::SP_FileDialogNewFolder}},
        {QStringLiteral("SCAN"), {"system-search", QStyle::SP_BrowserReload}},
        {QStringLiteral("CONFIG"), {"preferences-system", QStyle::SP_FileDialogDetailedView}},
        {QStringLiteral("SAVE_CONFIG"), {"document-save-as", QStyle::SP_DialogSaveButton}},
        {QStringLiteral("LOAD_CONFIG"), {"document-open", QStyle::SP_DialogOpenButton}},
        {QStringLiteral("HELP"), {"help-browser", QStyle::SP_DialogHelpButton}},
        {QStringLiteral("ABOUT"), {"help-about", QStyle::SP_MessageBoxInformation}},
        {QStringLiteral("CONTENTS"), {"help-contents", QStyle::SP_DialogHelpButton}},
        {QStringLiteral("EXPORT"), {"document-export", QStyle::SP_ArrowRight}},
        {QStringLiteral("LINUX"), {"utilities-terminal", QStyle::SP_ComputerIcon}},
        {QStringLiteral("BATCH"), {"text-x-script", QStyle::SP_FileIcon}},
        {QStringLiteral("SAVE"), {"document-save", QStyle::SP_DialogSaveButton}},
        {QStringLiteral("VIEW"), {"document-preview", QStyle::SP_FileDialogContentsView}},
        {QStringLiteral("DOWN"), {"go-down", QStyle::SP_ArrowDown}},
        {QStringLiteral("UP"), {"go-up", QStyle::SP_ArrowUp}},
        {QStringLiteral("ASC"), {"view-sort-ascending", QStyle::SP_ArrowUp}},
        {QStringLiteral("DESC"), {"view-sort-descending", QStyle::SP_ArrowDown}},
        {QStringLiteral("REMOVE"), {"list-remove", QStyle::SP_DialogDiscardButton}},
        {QStringLiteral("CLEAR"), {"edit-clear", QStyle::SP_DialogResetButton}},
        {QStringLiteral("ADVANCED_MAPS"), {"tools-wizard", QStyle::SP_FileDialogListView}},
        {QStringLiteral("STARTING_MAP"), {"go-first", QStyle::SP_MediaPlay}},
    };
    const auto it = looks.constFind(key);
    if (it == looks.constEnd())
        return {};
    const QIcon fallback = QApplication::style()->standardIcon(it->fallback);
    return QIcon::fromTheme(QString::fromLatin1(it->theme), fallback);
}

namespace {
void fill(QMenu* menu, const Tool& tool, const ToolClick& click)
{
    for (const Tool& child : tool.children) {
        if (child.isSeparator()) {
            menu->addSeparator();
        } else if (child.isMenu()) {
            QMenu* sub = menu->addMenu(toolIcon(child.iconKey), child.caption);
            sub->setObjectName(child.id);
            sub->menuAction()->setObjectName(child.id);
            fill(sub, child, click);
        } else {
            QAction* action = menu->addAction(toolIcon(child.iconKey), child.caption);
            action->setObjectName(child.id);
            action->setToolTip(child.tooltip.isEmpty() ? action->text().remove(QLatin1Char('&')) : child.tooltip);
            const QString id = child.id;
            QObject::connect(action, &QAction::triggered, menu, [click, id] { click(id); });
        }
    }
    menu->setToolTipsVisible(true);
}
} // namespace

void buildMenuBar(QMenuBar* bar, const ToolClick& click)
{
    for (const Tool& top : menuBarTools()) {
        QMenu* menu = bar->addMenu(top.caption);
        menu->setObjectName(top.id);
        menu->menuAction()->setObjectName(top.id);
        fill(menu, top, click);
    }
}

QMenu* buildPopup(const Tool& popup, QWidget* parent, const ToolClick& click)
{
    auto* menu = new QMenu(popup.caption, parent);
    menu->setObjectName(popup.id);
    fill(menu, popup, click);
    return menu;
}

} // namespace steward
