#include "settings/MainSettings.h"

#include "model/FieldIndexes.h"
#include "platform/System.h"
#include "settings/SettingsStore.h"
#include "settings/StoredKeys.h"
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
        presentTexts(K::ServerInfo2);
        presentTexts(K::SpeedGravity);
        presentChecks(K::WeaponFlags);
        presentChecks(K::ForceFlags);
        presentChecks(K::GameSpecificOptions);
        for (Field* f : m_profile.array(K::DMFlags.array()))
            f->setValue(textToBool(get(K::DMFlags.text(f->index()), QStringLiteral("False"))) ? 1 : 0);
        for (Field* f : m_profile.array(K::BOTs.array()))
            f->setValue(roundedDown(get(K::BOTs.text(f->index()), QStringLiteral("0"))));
        bannedAddresses();
        rotation();
        startOption();
        selectByIndex(K::GameType, QStringLiteral("0"));
        selectByIndex(K::LoggingType, QStringLiteral("3"));
        selectByIndex(K::ServerType, QStringLiteral("2"));
        presentTexts(K::GameLimts);
        for (Field* f : m_profile.array(K::CFG1.array()))
            f->setText(get(K::CFG1.text(f->index())));
        presentChecks(K::AdvSaber);
        presentTexts(K::AdvSaberValues);
        masters();
        singles();
    }

private:
    QString get(const QString& k, const QString& def = {}) const { return m_store.GetSetting(k, def); }
    QString get(const StoredKey& k, const QString& def = {}) const { return m_store.GetSetting(k.text(), def); }

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
        for (Field* f : m_profile.array(K::ServerInfo1.array())) {
            const int i = f->index();
            const QString s = get(K::ServerInfo1.text(i));
            if (i == ServerBox::HostName)
                f->setText(s.isEmpty() ? computerName() : decodeCleanText(s));
            else if (i == ServerBox::Admin)
                f->setText(s.isEmpty() ? userName() : decodeCleanText(s));
            else if (s.isEmpty())
                continue;
            else if (i == ServerBox::Address)
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
    void presentTexts(const StoredKey& each)
    {
        for (Field* f : m_profile.array(each.array())) {
            const QString k = each.text(f->index());
            if (!get(k).isEmpty())
                f->setText(get(k));
        }
    }

    void presentChecks(const StoredKey& each)
    {
        for (Field* f : m_profile.array(each.array())) {
            const QString s = get(each.text(f->index()));
            if (!s.isEmpty())
                f->setValue(textToBool(s) ? 1 : 0);
        }
    }

    void bannedAddresses()
    {
        Field& list = m_profile.field(K::BannedIPs.field);
        for (const QString& item : splitStoredList(get(K::BannedIPs)))
            list.addItem(item);
    }

    void rotation()
    {
        const QString stored = get(K::MapListSaved);
        Field& grid = m_profile.field(K::MapListSaved.field);
        // A restored row knows its name only, and carries the common mark.
        for (const QString& map : splitStoredList(stored))
            grid.addRow(rotationRow(map, QString(), QString()));
        if (!stored.isEmpty())
            m_profile.setText(F::lblMapsSelected, QString::number(grid.count()) + QStringLiteral(" Selected Maps"));
    }

    void startOption()
    {
        Field& minimize = m_profile.field(K::AppMinimize.field);
        if (get(K::AppMinimize) == minimize.name())
            minimize.setValue(1);
        else
            m_profile.setValue(F::optStartClose, 1);
    }

    // The stored number is the index of the option; an index outside the array fails.
    void selectByIndex(const StoredKey& choice, const QString& def)
    {
        m_profile.field(choice.array()(wholeNumber(get(choice, def)))).setValue(1);
    }

    void masters()
    {
        // The first master is never kept: the window begins every run with its own.
        text(K::Master2, kMaster2);
        text(K::Master3, kMaster3);
        text(K::Master4, {});
        text(K::Master5, {});
    }

    // The stored text, or def when the key is missing.
    void text(const StoredKey& one, const QString& def) { m_profile.setText(one.field, get(one, def)); }

    void singles()
    {
        text(K::LogName, QStringLiteral("games.log"));
        text(K::MapTimeOut, QStringLiteral("300"));
        text(K::Msg1, defaultMsg1());
        text(K::Msg2, defaultMsg2());
        text(K::MsgTime, QStringLiteral("5"));
        m_profile.setValue(K::MsgOn.field, wholeNumber(get(K::MsgOn, QStringLiteral("1"))));
        // "0" and "1" as well as "True" and "False" are values of the box.
        m_profile.setValue(K::SelectAdvMapCfg.field, textToBool(get(K::SelectAdvMapCfg, QStringLiteral("0"))) ? 1 : 0);
        text(K::PathToMapsCFG, {});
        text(K::Quad, {});
        text(K::Knockback, {});
        text(K::WeapRespawn, QStringLiteral("0"));
        text(K::MaxForceRank, QStringLiteral("0"));
        text(K::ForceRegen, QStringLiteral("0"));
        text(K::MaxHoloCarry, QStringLiteral("3"));
        // The watcher's settings; a box that isn't "1" is clear.
        m_profile.setValue(K::RestartServer.field,
                           get(K::RestartServer, QStringLiteral("0")) == QLatin1String("1") ? 1 : 0);
        text(K::RestartLimit, QStringLiteral("5"));
        text(K::RestartWindow, QStringLiteral("10"));
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
