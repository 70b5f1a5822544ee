#include "generate/ServerConfigWriter.h"

#include "model/Constants.h"
#include "model/FieldIndexes.h"
#include "model/ServerProfile.h"
#include "platform/Clock.h"
#include "support/Strings.h"
#include "support/TextFile.h"

namespace steward {

namespace {

const QString kSlashLine = QString(63, QLatin1Char('/'));
constexpr qint32 kDefaultPort = 28070;
constexpr int kJediVsMerc = 18;
constexpr FieldId kMasters[] = {F::txtMaster1, F::txtMaster2, F::txtMaster3, F::txtMaster4, F::txtMaster5};

QString quoted(const QString& text) { return QLatin1Char('"') + text + QLatin1Char('"'); }

/// The session file, written section by section in the order the server reads it.
/// Each section reads the profile at the moment it is written.
class SessionFile {
public:
    SessionFile(const ServerProfile& profile, const SessionFacts& facts, SessionValues& session, LineSink& out)
        : m_profile(profile), m_facts(facts), m_session(session), m_out(out)
    {}

    /// From the heading to the cycle's exec line.
    void opening()
    {
        heading();
        identity();
        credit();
        serverNumbers();
        advancedSaber();
        gameValues();
        gameOptions();
        flagFields();
        masterServers();
        logging();
        gameLimits();
        memoryComment();
        firstMap();
        cycleExec();
    }

private:
    // --- reading the profile -------------------------------------------------------

    QString text(FieldId id) const { return m_profile.text(id); }
    QString tag(FieldId id) const { return m_profile.tag(id); }
    bool isSet(FieldId id) const { return m_profile.isSet(id); }
    int lbound(FieldArray array) const { return m_profile.lbound(array); }
    int ubound(FieldArray array) const { return m_profile.ubound(array); }
    bool autoCycle() const { return isSet(F::chkMapAutoCycle); }

    // --- writing lines -------------------------------------------------------------

    void line(const QString& text = {}) { m_out.line(text); }
    /// seta key "value"
    void seta(const QString& key, const QString& value)
    {
        line(QStringLiteral("seta ") + key + QLatin1Char(' ') + quoted(value));
    }
    /// seta with the field's own Tag and Text.
    void setaField(FieldId id) { seta(tag(id), text(id)); }

    // --- the sections --------------------------------------------------------------

    void heading()
    {
        const Clock& clock = *m_facts.clock;
        const QDateTime now = clock.now();
        line(QStringLiteral("// JK2 Server Configuration File"));
        line(kSlashLine);
        line(QStringLiteral("// File Created by: Arena Steward ver: ") + kVersionText);
        line(QStringLiteral("// File Created On: ") + clock.longDate(now.date()) + QStringLiteral(" at ") +
             clock.timeText(now.time()));
        line(QStringLiteral("// ") + kContactAddress);
        line(kSlashLine);
        line();
        line(QStringLiteral("// This file is automatically executed by ") + m_facts.serverExecutable);
        line();
        line();
    }

    void identity()
    {
        constexpr auto name = F::txtServerConfig;
        for (int i = lbound(name); i <= ubound(name); ++i) {
            const QString value = text(name(i));
            const QString key = tag(name(i));
            switch (i) {
            case 0: // message of the day
            case 2: // host name: written even when empty
                seta(key, value);
                break;
            case 12: // port and address go on the command line, so here only as a note
            case 16:
                if (!value.isEmpty())
                    line(QStringLiteral("//seta ") + key + QLatin1Char(' ') + quoted(value));
                break;
            case 13: // private and remote passwords: an empty one is written as ""
            case 14:
                seta(key, value);
                break;
            case 15:
                if (!trimBlanks(value).isEmpty()) {
                    seta(QStringLiteral("g_needpass"), QStringLiteral("1"));
                    seta(key, value);
                } else {
                    seta(QStringLiteral("g_needpass"), QStringLiteral("0"));
                    seta(key, QString());
                }
                break;
            default: // the descriptive fields: quoted keys, left out when empty
                if (!value.isEmpty())
                    line(QStringLiteral("sets ") + quoted(key) + QLatin1Char(' ') + quoted(value));
                break;
            }
        }
    }

    void credit()
    {
        line(QStringLiteral("sets \".Configured By\" ") + quoted(kProductTitle + QStringLiteral(": ") + kVersionText));
        line();
    }

    void serverNumbers()
    {
        constexpr auto name = F::txtServerConfigSpin;
        constexpr int kSpawnProtect = 3; // a stored setting the file never carries
        for (int i = lbound(name); i <= ubound(name); ++i)
            if (i != kSpawnProtect && !text(name(i)).isEmpty())
                setaField(name(i));
    }

    void advancedSaber()
    {
        line(QStringLiteral("//Advanced Saber Begin//"));
        constexpr auto values = F::txtAdvancedSaber;
        for (int i = lbound(values); i <= ubound(values); ++i)
            if (!text(values(i)).isEmpty())
                setaField(values(i));
        constexpr auto checks = F::chkAdvancedSaber;
        for (int i = lbound(checks); i <= ubound(checks); ++i)
            seta(tag(checks(i)), isSet(checks(i)) ? QStringLiteral("1") : QStringLiteral("0"));
        line(QStringLiteral("//Advanced Saber End//"));
    }

    void gameValues()
    {
        // A text whose leading number isn't above 0 gives way to the fallback; no
        // fallback means no line at all.
        struct Value {
            FieldId field;
            const char* fallback;
        };
        static const Value values[] = {
            {F::txtSpeed(1), "800"},   {F::txtSpeed(0), "280"},       {F::txtSpeed(2), "180"},
            {F::txtSpeed(3), nullptr}, {F::txtMaxForceRank, "0"},     {F::txtForceReGen(0), "200"},
            {F::txtMapTimeOut, "300"}, {F::txtMaxHolocronCarry, "3"}, {F::txtWeapRespawn, "5"},
        };
        for (const Value& v : values) {
            const QString value = text(v.field);
            if (leadingNumber(value) > 0)
                seta(tag(v.field), value);
            else if (v.fallback)
                seta(tag(v.field), QString::fromLatin1(v.fallback));
        }
    }

    void gameOptions()
    {
        // "Jedi vs Merc" goes on the command line when ticked; in the file it only ever says 0.
        constexpr auto name = F::chkQuake3Specific;
        for (int i = lbound(name); i <= ubound(name); ++i) {
            if (!isSet(name(i)))
                seta(tag(name(i)), QStringLiteral("0"));
            else if (i != kJediVsMerc)
                seta(tag(name(i)), QStringLiteral("1"));
        }
        m_session.merc = mercSelected(m_profile);
    }

    void flagFields()
    {
        line(QStringLiteral("seta g_weaponDisable ") + quoted(text(F::txtWeaponFlags)) +
             QStringLiteral(" // Weapons Disabled"));
        if (isSet(F::optDefaultGameType(3)))
            line(QStringLiteral("seta g_duelWeaponDisable ") + quoted(text(F::txtDuelWeaponFlags)) +
                 QStringLiteral(" // Weapons Disabled Duel Only"));
        line(QStringLiteral("seta g_forcePowerDisable ") + quoted(text(F::txtForceFlags)) +
             QStringLiteral(" // Force Power Disabled"));
        line(QStringLiteral("seta dmflags ") + quoted(text(F::txtDMFlags)));
    }

    void masterServers()
    {
        if (!isSet(F::chkServerType(2)))
            return;
        line(QStringLiteral("// ------------------- Additional Master Server List -------------------"));
        for (int n = 5; n >= 1; --n) {
            const FieldId name = kMasters[n - 1];
            seta(tag(name), trimBlanks(text(name)));
        }
        line(QStringLiteral("// --------------------------------------------------------------------"));
        line();
    }

    void logging()
    {
        // Both frames of the array have a selected option. "Disable" of the stats frame
        // takes the game log's branch and writes its own index as the value.
        constexpr auto name = F::optLogging;
        constexpr int kEnableStats = 4;
        for (int i = lbound(name); i <= ubound(name); ++i) {
            if (!isSet(name(i)))
                continue;
            if (i == kEnableStats) {
                seta(tag(name(i)), QStringLiteral("1"));
                setaField(F::txtStatsLogName);
            } else {
                seta(tag(name(i)), QString::number(i));
                setaField(F::txtLogFileName);
            }
        }
        line();
    }

    void gameLimits()
    {
        constexpr auto name = F::txtGameLimits;
        for (int i : {0, 1, 3, 2})
            setaField(name(i));
        line();
    }

    void memoryComment()
    {
        // Worked out here, in this order: an overflow or a port that isn't a number ends
        // the file before its note.
        readLaunchValues(m_profile, m_session);

        line(QStringLiteral("// ZoneMegs = ") + QString::number(m_session.zone));
        line(QStringLiteral("// HunkMegs = ") + QString::number(m_session.hunk));
        line(QStringLiteral("// SoundMegs = ") + QString::number(m_session.sound));
        line(QStringLiteral("// IP = ") + m_session.ip);
        line(QStringLiteral("// Port = ") + QString::number(m_session.port));
        line();
        line(QStringLiteral("//----------------"));
        line(QStringLiteral("//#### THE FOLLOWING KICKS THE SERVER INTO GEAR ####"));
        line(QStringLiteral("//----------------"));
        line();
    }

    void firstMap()
    {
        const QString key = tag(F::chkMapAutoCycle);
        if (autoCycle()) {
            line(key + QStringLiteral(" \"1\""));
            line(QStringLiteral("map ") + text(F::cboStartingMap));
            return;
        }
        line(key + QStringLiteral(" \"0\""));
        if (m_facts.useSavedCycle) {
            line(QStringLiteral("Map ") + (m_facts.savedCycleStart ? m_facts.savedCycleStart() : QString()));
            return;
        }
        QString first = m_profile.startingMap();
        if (first.isEmpty())
            first = m_profile.field(F::lsvMapRotation).cell(0, 0); // no rows: error 35600
        line(QStringLiteral("Map ") + first);
    }

    void cycleExec()
    {
        if (!autoCycle())
            line(QStringLiteral("exec ") + quoted(m_session.cycleFile));
    }

    const ServerProfile& m_profile;
    const SessionFacts& m_facts;
    SessionValues& m_session;
    LineSink& m_out;
};

} // namespace

bool mercSelected(const ServerProfile& profile)
{
    // A ticked box after "Jedi vs Merc" takes the mark away again.
    constexpr auto name = F::chkQuake3Specific;
    bool merc = false;
    for (int i = profile.lbound(name); i <= profile.ubound(name); ++i)
        if (profile.isSet(name(i)))
            merc = i == kJediVsMerc;
    return merc;
}

void readLaunchValues(const ServerProfile& profile, SessionValues& session)
{
    constexpr auto spin = F::txtServerConfigSpin;
    session.zone = toInt16(leadingNumber(profile.text(spin(ServerBox::ZoneMegs))));
    session.hunk = toInt16(leadingNumber(profile.text(spin(ServerBox::HunkMegs))));
    session.sound = toInt16(leadingNumber(profile.text(spin(ServerBox::SoundMegs))));
    session.ip = profile.text(F::txtServerConfig(ServerBox::Address));
    const QString port = trimBlanks(profile.text(F::txtServerConfig(ServerBox::Port)));
    session.port = port.isEmpty() ? kDefaultPort : textToInt32(port);
}

void writeSessionOpening(const ServerProfile& profile, const SessionFacts& facts, SessionValues& session, LineSink& out)
{
    SessionFile(profile, facts, session, out).opening();
}

void writeSessionClosing(const ServerProfile& profile, LineSink& out)
{
    // The additional configurations, then the end.
    for (int i = profile.lbound(F::cboConfig); i <= profile.ubound(F::cboConfig); ++i) {
        const QString config = trimBlanks(profile.text(F::cboConfig(i)));
        if (!config.isEmpty())
            out.line(QStringLiteral("exec ") + config);
    }
    out.line(QStringLiteral("//"));
    out.line(QStringLiteral("writeconfig jk2mpconfig.cfg"));
    out.line(QStringLiteral("wait"));
    out.line(QStringLiteral("//EOF"));
}

bool sessionWantsBots(const ServerProfile& profile)
{
    constexpr auto bots = F::chkBOTs;
    return profile.value(bots(0)) == 1 || profile.value(bots(5)) == 1;
}

bool botsMeetAPassword(const ServerProfile& profile)
{
    // The password isn't trimmed here: blanks alone still refuse.
    return profile.value(F::chkBOTs(0)) == 1 && !profile.text(F::txtServerConfig(ServerBox::ServerPassword)).isEmpty();
}

} // namespace steward
