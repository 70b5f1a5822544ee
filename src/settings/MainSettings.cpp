#include "settings/MainSettings.h"

#include "platform/System.h"
#include "settings/SettingsStore.h"
#include "support/AppContext.h"
#include "model/Constants.h"
#include "model/RotationRows.h"
#include "model/ServerProfile.h"
#include "support/ErrorReporter.h"
#include "support/Errors.h"
#include "support/Strings.h"

#include <cmath>

namespace steward {

namespace {

const QString kBlank = QStringLiteral(" ");

QString key(const QString& base, int index) { return base + QString::number(index); }

// The name as the system gives it in its buffer: cut at the first NUL.
QString systemName(QString name)
{
    const auto nul = name.indexOf(QChar(0));
    if (nul >= 0)
        name.truncate(nul);
    return name;
}

// A text converted to a 16-bit whole number, rounded half to even: text that is not a
// number is error 13, a number out of range error 6.
int wholeNumber(const QString& text)
{
    if (!isNumeric(text))
        raiseError(err::TypeMismatch);
    return toInt16(text.trimmed().toDouble());
}

class Reader {
public:
    Reader(AppContext& app, ServerProfile& profile) : m_app(app), m_store(app.store()), m_profile(profile) {}

    void run()
    {
        serverInfo();
        presentTexts(QStringLiteral("ServerInfo2"), F::txtServerConfigSpin);
        presentTexts(QStringLiteral("SpeedGravity"), F::txtSpeed);
        presentChecks(QStringLiteral("WeaponFlags"), F::chkWeaponFlags);
        presentChecks(QStringLiteral("ForceFlags"), F::chkPowerUpFlags);
        presentChecks(QStringLiteral("GameSpecificOptions"), F::chkQuake3Specific);
        for (Field* f : m_profile.array(F::chkDMFlags))
            f->setValue(textToBool(get(key(QStringLiteral("DMFlags"), f->index()), QStringLiteral("False"))) ? 1 : 0);
        for (Field* f : m_profile.array(F::chkBOTs))
            f->setValue(roundedDown(get(key(QStringLiteral("BOTs"), f->index()), QStringLiteral("0"))));
        bannedAddresses();
        rotation();
        startOption();
        selectByIndex(QStringLiteral("GameType"), QStringLiteral("0"), F::optDefaultGameType);
        selectByIndex(QStringLiteral("LoggingType"), QStringLiteral("3"), F::optLogging);
        selectByIndex(QStringLiteral("ServerType"), QStringLiteral("2"), F::chkServerType);
        presentTexts(QStringLiteral("GameLimts"), F::txtGameLimits);
        for (Field* f : m_profile.array(F::cboConfig))
            f->setText(get(key(QStringLiteral("CFG1"), f->index())));
        presentChecks(QStringLiteral("AdvSaber"), F::chkAdvancedSaber);
        presentTexts(QStringLiteral("AdvSaberValues"), F::txtAdvancedSaber);
        masters();
        singles();
    }

private:
    QString get(const QString& k, const QString& def = {}) const { return m_store.GetSetting(k, def); }

    static int roundedDown(const QString& text)
    {
        if (!isNumeric(text))
            raiseError(err::TypeMismatch);
        const double value = std::floor(text.trimmed().toDouble());
        if (value < -2147483648.0 || value > 2147483647.0)
            raiseError(err::Overflow);
        return static_cast<int>(value);
    }

    void serverInfo()
    {
        for (Field* f : m_profile.array(F::txtServerConfig)) {
            const int i = f->index();
            const QString s = get(key(QStringLiteral("ServerInfo1"), i));
            if (i == 2)
                f->setText(s.isEmpty() ? computerName() : decodeCleanText(s));
            else if (i == 3)
                f->setText(s.isEmpty() ? userName() : decodeCleanText(s));
            else if (s.isEmpty())
                continue;
            else if (i == 16)
                f->setText(s); // the bound address is taken as it stands
            else
                f->setText(decodeCleanText(s));
        }
    }

    QString computerName() const
    {
        return m_app.services.names ? systemName(m_app.services.names->computerName()) : QString();
    }
    QString userName() const { return m_app.services.names ? systemName(m_app.services.names->userName()) : QString(); }

    // A value that is not empty is assigned; an empty or missing one leaves the field.
    void presentTexts(const QString& base, FieldArray array)
    {
        for (Field* f : m_profile.array(array)) {
            const QString k = key(base, f->index());
            if (!get(k).isEmpty())
                f->setText(get(k));
        }
    }

    void presentChecks(const QString& base, FieldArray array)
    {
        for (Field* f : m_profile.array(array)) {
            const QString s = get(key(base, f->index()));
            if (!s.isEmpty())
                f->setValue(textToBool(s) ? 1 : 0);
        }
    }

    void bannedAddresses()
    {
        Field& list = m_profile.field(F::lstBannedIPs);
        for (const QString& item : splitStoredList(get(QStringLiteral("BannedIPs"))))
            list.addItem(item);
    }

    void rotation()
    {
        const QString stored = get(QStringLiteral("MapListSaved"));
        Field& grid = m_profile.field(F::lsvMapRotation);
        // A restored row knows its name only, and carries the common mark.
        for (const QString& map : splitStoredList(stored))
            grid.addRow(rotationRow(map, QString(), QString()));
        if (!stored.isEmpty())
            m_profile.setText(F::lblMapsSelected,
                              QString::number(grid.count()) + QStringLiteral(" Selected Maps"));
    }

    void startOption()
    {
        Field& minimize = m_profile.field(F::optStartMinimize);
        if (get(QStringLiteral("AppMinimize")) == minimize.name())
            minimize.setValue(1);
        else
            m_profile.setValue(F::optStartClose, 1);
    }

    // The stored number is the index of the option; an index outside the array fails.
    void selectByIndex(const QString& k, const QString& def, FieldArray array)
    {
        m_profile.field(array(wholeNumber(get(k, def)))).setValue(1);
    }

    void masters()
    {
        get(QStringLiteral("Master1"), kMaster1); // read and dropped: the first master is never kept
        m_profile.setText(F::txtMaster2, get(QStringLiteral("Master2"), kMaster2));
        m_profile.setText(F::txtMaster3, get(QStringLiteral("Master3"), kMaster3));
        m_profile.setText(F::txtMaster4, get(QStringLiteral("Master4")));
        m_profile.setText(F::txtMaster5, get(QStringLiteral("Master5")));
    }

    void singles()
    {
        auto text = [this](FieldId field, const char* k, const QString& def) {
            m_profile.setText(field, get(QString::fromLatin1(k), def));
        };
        text(F::txtLogFileName, "LogName", QStringLiteral("games.log"));
        text(F::txtMapTimeOut, "MapTimeOut", QStringLiteral("300"));
        m_profile.setText(F::txtMsg(0), get(QStringLiteral("Msg1"), defaultMsg1()));
        m_profile.setText(F::txtMsg(1), get(QStringLiteral("Msg2"), defaultMsg2()));
        text(F::txtMsgTimer, "MsgTime", QStringLiteral("5"));
        m_profile.setValue(F::chkSendMessage, wholeNumber(get(QStringLiteral("MsgOn"), QStringLiteral("1"))));
        // "0" and "1" as well as "True" and "False" are values of the box.
        m_profile.setValue(F::chkUseINI,
                           textToBool(get(QStringLiteral("SelectAdvMapCfg"), QStringLiteral("0"))) ? 1 : 0);
        text(F::txtServerINI, "PathToMapsCFG", {});
        text(F::txtWeaponEnhancer, "Quad", {});
        text(F::txtKnockBack, "Knockback", {});
        text(F::txtWeapRespawn, "WeapRespawn", QStringLiteral("0"));
        text(F::txtMaxForceRank, "MaxForceRank", QStringLiteral("0"));
        m_profile.setText(F::txtForceReGen(0), get(QStringLiteral("ForceRegen"), QStringLiteral("0")));
        text(F::txtMaxHolocronCarry, "MaxHoloCarry", QStringLiteral("3"));
        // The watcher's settings; a box that isn't "1" is clear.
        m_profile.setValue(F::chkRestartServer, get(QStringLiteral("RestartServer"), QStringLiteral("0")) ==
                                                        QLatin1String("1") ? 1 : 0);
        text(F::txtRestartLimit, "RestartLimit", QStringLiteral("5"));
        text(F::txtRestartWindow, "RestartWindow", QStringLiteral("10"));
    }

    AppContext& m_app;
    SettingsStore& m_store;
    ServerProfile& m_profile;
};

} // namespace

QString defaultMsg1() { return QStringLiteral("^2This server is configured by ^1Arena Steward"); }

QString defaultMsg2() { return QStringLiteral("^2Get Arena Steward at ^1") + kProductSite; }

QString decodeCleanText(const QString& stored)
{
    const QString text = stored == kBlank ? QString() : stored;
    return IsClean(text, QStringLiteral("%"), QStringLiteral(","));
}

QStringList splitStoredList(const QString& stored)
{
    QStringList items;
    if (stored.isEmpty())
        return items;
    const QStringList pieces = stored.split(QLatin1Char(';'));
    for (const QString& piece : pieces) {
        const QString trimmed = trimBlanks(piece);
        if (trimmed.isEmpty() || trimmed.contains(QLatin1Char(';')))
            continue;
        items << piece;
    }
    return items;
}

void GetMainSettings(AppContext& app, ServerProfile& profile)
{
    try {
        Reader(app, profile).run();
    } catch (const RuntimeError& e) {
        reportTagged(app, e, QStringLiteral("::Code.GetMainSettings(Sub)"));
    }
}

} // namespace steward
