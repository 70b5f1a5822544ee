#include "model/KeyRules.h"

#include <QStringList>
#include <Qt>

namespace steward {

TextBoxKeyRules textBoxKeyRules(const QString& fieldName)
{
    static const QStringList numeric = {
        QStringLiteral("txtServerConfigSpin"), QStringLiteral("txtSpeed"),
        QStringLiteral("txtGameLimits"),       QStringLiteral("txtForceReGen"),
        QStringLiteral("txtMaxHolocronCarry"), QStringLiteral("txtMaxForceRank"),
        QStringLiteral("txtKnockBack"),        QStringLiteral("txtMapTimeOut"),
        QStringLiteral("txtWeaponEnhancer"),   QStringLiteral("txtWeapRespawn"),
        QStringLiteral("txtRestartLimit"),     QStringLiteral("txtRestartWindow"),
    };
    static const QStringList plain = {
        QStringLiteral("txtServerConfig"), QStringLiteral("txtLogFileName"), QStringLiteral("txtMsg"),
        QStringLiteral("txtMsgTimer"),     QStringLiteral("txtServerIP"),    QStringLiteral("txtMaster1"),
        QStringLiteral("txtMaster2"),      QStringLiteral("txtMaster3"),     QStringLiteral("txtMaster4"),
        QStringLiteral("txtMaster5"),
    };
    TextBoxKeyRules rules;
    if (numeric.contains(fieldName)) {
        rules.selectOnFocus = rules.keyDownFilter = rules.characterFilter = true;
    } else if (plain.contains(fieldName)) {
        rules.selectOnFocus = true;
    } else if (fieldName == QLatin1String("txtAdvancedSaber")) {
        rules.selectOnChange = true;
    }
    return rules;
}

bool keyDownPasses(int qtKey, bool keypad)
{
    if (qtKey == Qt::Key_Backspace)
        return true;
    return !keypad && qtKey >= Qt::Key_0 && qtKey <= Qt::Key_9;
}

bool characterPasses(int code) { return code == 8 || (code >= 40 && code <= 57); }

bool keyGivesCharacter(const QString& text)
{
    // Delete gives no character, and Tab only moves the focus.
    return !text.isEmpty() && text.at(0) != QChar(0x7f) && text.at(0) != QLatin1Char('\t');
}

} // namespace steward
