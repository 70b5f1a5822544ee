#include "commands/ToolTable.h"

namespace steward {

namespace {

Tool entry(const char* id, const char* caption, const char* icon = "", const char* tip = "")
{
    return Tool{
        QString::fromLatin1(id), QString::fromLatin1(caption), QString::fromLatin1(icon), QString::fromLatin1(tip), {}};
}

Tool menu(const char* id, const char* caption, const char* icon, std::vector<Tool> children)
{
    Tool t = entry(id, caption, icon);
    t.children = std::move(children);
    return t;
}

Tool separator() { return Tool{}; }

std::vector<Tool> buildMenuBar()
{
    return {
        menu("id_File", "&File", "", {entry("id_FileExit", "E&xit")}),
        menu("id_Utilities", "&Utilities", "",
             {
                 menu("id_UtilitiesMaps", "&Maps", "MAPS",
                      {entry("id_UtilitiesMapsScanfornewmaps", "Scan for Maps...", "SCAN")}),
                 menu("id_UtilitiesConfiguration", "Con&figuration", "CONFIG",
                      {entry("id_UtilitiesConfigurationSave", "Save...", "SAVE_CONFIG"),
                       entry("id_UtilitiesConfigurationLoad", "&Load...", "LOAD_CONFIG")}),
                 menu("id_UtilitiesExport", "&Export", "EXPORT",
                      {entry("id_UtilitiesExportLinuxShellScript", "&Linux Shell Script...", "LINUX"),
                       entry("id_UtilitiesExportBatchFile", "&Batch File...", "BATCH"),
                       entry("id_UtilitiesExportServerConfiguration", "Server Configuration...", "SAVE"),
                       entry("id_UtilitiesExportMapCycle", "Map Cycle", "SAVE", "Save Map Cycle")}),
                 separator(),
                 entry("id_UtilitiesServerConsole", "Server Console..."),
             }),
        menu("id_Help", "&Help", "",
             {
                 entry("id_HelpContents", "Contents", "CONTENTS"),
                 separator(),
                 entry("id_HelpModCentral", "Jedi Mod Central"),
                 entry("id_HelpOfficialSite", "Official Star Wars Jedi Knight II Jedi Outcast"),
                 menu("id_HelpForums", "&Forums", "",
                      {entry("id_HelpForumsForumPlanet", "Lucas Forums"),
                       entry("id_HelpForumsModCentral", "Mod Central Forums")}),
                 separator(),
                 entry("id_HelpMailAuthor", "Mail &Author"),
                 entry("id_HelpAboutArenaSteward", "About &Arena Steward", "ABOUT"),
             }),
    };
}

Tool buildStandards()
{
    return menu("ID_mnuStandards", "Standards", "",
                {entry("ID_AllStandardMPMaps", "All Standard FFA Maps", "LOAD_MAPS"),
                 entry("ID_AllStandardSWMaps", "All Standard CTF Maps", "LOAD_MAPS"),
                 entry("ID_AllStandardCPMaps", "All Standard DUEL Maps", "LOAD_MAPS"), entry("ID_Cancel", "Cancel")});
}

Tool buildAdvanced()
{
    return menu(
        "ID_Advanced", "Advanced", "",
        {entry("ID_MapWizard", "Map Wizard...", "ADVANCED_MAPS"), separator(),
         entry("ID_SetStartingMap", "Set Starting Map", "STARTING_MAP"), separator(),
         entry("ID_SortAscending", "Sort Ascending", "ASC"), entry("ID_SortDescending", "Sort Descending", "DESC"),
         separator(), entry("id_UtilitiesMapsScanfornewmaps", "Scan for Maps...", "SCAN"),
         entry("id_UtilitiesExportMapCycle", "Map Cycle", "SAVE"), entry("ID_RemoveMap", "Remove Map", "REMOVE"),
         separator(), entry("ID_ClearList", "Clear List", "CLEAR"), separator(), entry("ID_Cancel", "Cancel")});
}

void collectIds(const Tool& tool, QStringList& ids)
{
    if (tool.isMenu()) {
        for (const Tool& child : tool.children)
            collectIds(child, ids);
        return;
    }
    if (!tool.id.isEmpty() && !ids.contains(tool.id))
        ids << tool.id;
}

} // namespace

const std::vector<Tool>& menuBarTools()
{
    static const std::vector<Tool> tools = buildMenuBar();
    return tools;
}

const Tool& standardsPopup()
{
    static const Tool tool = buildStandards();
    return tool;
}

const Tool& advancedPopup()
{
    static const Tool tool = buildAdvanced();
    return tool;
}

QStringList toolIdsInTableOrder()
{
    QStringList ids;
    for (const Tool& t : menuBarTools())
        collectIds(t, ids);
    collectIds(standardsPopup(), ids);
    collectIds(advancedPopup(), ids);
    return ids;
}

} // namespace steward
