#include "generate/ServerConfigWriter.h"

#include "generate/BanListWriter.h"
#include "generate/BotConfigWriter.h"
#include "generate/MapCycleWriter.h"
#include "generate/ServerLaunch.h"
#include "platform/Clock.h"
#include "platform/Prompts.h"
#include "shell/AppContext.h"
#include "shell/Constants.h"
#include "shell/ServerProfile.h"
#include "support/ErrorReporter.h"
#include "support/Errors.h"
#include "support/Strings.h"
#include "support/TextFile.h"

namespace steward {

namespace {

const QString kErrorTag = QStringLiteral("::Code.CreateJediConfiguration(Function)");
const QString kSlashLine = QString(63, QLatin1Char('/'));
constexpr qint32 kDefaultPort = 28070;

QString quoted(const QString& text) { return QLatin1Char('"') + text + QLatin1Char('"'); }

/// The session file, written section by section in the order the server reads it.
/// Each section reads the profile at the moment it is written.
class SessionFile {
public:
    SessionFile(AppContext& app, ServerProfile& profile, SessionValues& session, bool useSavedCycle,
                TextFileWriter& out)
        : m_app(app), m_profile(profile), m_session(session), m_useSavedCycle(useSavedCycle), m_out(out)
    {
    }

    /// Writes every section; false when the bots were refused, the file then ends there.
    bool write()
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
        if (!bots())
            return false;
        bans();
        additionalConfigs();
        end();
        return true;
    }

private:
    // --- reading the profile -------------------------------------------------------

    QString text(const QString& name, int index = -1) const { return m_profile.text(name, index); }
    QString tag(const QString& name, int index = -1) const { return m_profile.tag(name, index); }
    bool isSet(const QString& name, int index = -1) const { return m_profile.isSet(name, index); }
    int lbound(const QString& name) const { return m_profile.lbound(name); }
    int ubound(const QString& name) const { return m_profile.ubound(name); }
    bool autoCycle() const { return isSet(QStringLiteral("chkMapAutoCycle")); }

    // --- writing lines -------------------------------------------------------------

    void line(const QString& text = {}) { m_out.line(text); }
    /// seta key "value"
    void seta(const QString& key, const QString& value)
    {
        line(QStringLiteral("seta ") + key + QLatin1Char(' ') + quoted(value));
    }
    /// seta with the field's own Tag and Text.
    void setaField(const QString& name, int index = -1) { seta(tag(name, index), text(name, index)); }

    // --- the sections --------------------------------------------------------------

    void heading()
    {
        const QDateTime now = m_app.clock().now();
        line(QStringLiteral("// JK2 Server Configuration File"));
        line(kSlashLine);
        line(QStringLiteral("// File Created by: Arena Steward ver: ") + kVersionText);
        line(QStringLiteral("// File Created On: ") + m_app.clock().longDate(now.date()) + QStringLiteral(" at ") +
             m_app.clock().timeText(now.time()));
        line(QStringLiteral("// ") + kContactAddress);
        line(kSlashLine);
        line();
        line(QStringLiteral("// This file is automatically executed by ") + m_app.serverExecutable);
        line();
        line();
    }

    void identity()
    {
        const QString name = QStringLiteral("txtServerConfig");
        for (int i = lbound(name); i <= ubound(name); ++i) {
            const QString value = text(name, i);
            const QString key = tag(name, i);
            switch (i) {
            case 0:  // message of the day
            case 2:  // host name: written even when empty
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
        const QString name = QStringLiteral("txtServerConfigSpin");
        constexpr int kSpawnProtect = 3; // a stored setting the file never carries
        for (int i = lbound(name); i <= ubound(name); ++i)
            if (i != kSpawnProtect && !text(name, i).isEmpty())
                setaField(name, i);
    }

    void advancedSaber()
    {
        line(QStringLiteral("//Advanced Saber Begin//"));
        const QString values = QStringLiteral("txtAdvancedSaber");
        for (int i = lbound(values); i <= ubound(values); ++i)
            if (!text(values, i).isEmpty())
                setaField(values, i);
        const QString checks = QStringLiteral("chkAdvancedSaber");
        for (int i = lbound(checks); i <= ubound(checks); ++i)
            seta(tag(checks, i), isSet(checks, i) ? QStringLiteral("1") : QStringLiteral("0"));
        line(QStringLiteral("//Advanced Saber End//"));
    }

    void gameValues()
    {
        // A text whose leading number isn't above 0 gives way to the fallback; no
        // fallback means no line at all.
        struct Value {
            const char* name;
            int index;
            const char* fallback;
        };
        static const Value values[] = {
            {"txtSpeed", 1, "800"},         {"txtSpeed", 0, "280"},       {"txtSpeed", 2, "180"},
            {"txtSpeed", 3, nullptr},       {"txtMaxForceRank", -1, "0"}, {"txtForceReGen", 0, "200"},
            {"txtMapTimeOut", -1, "300"},   {"txtMaxHolocronCarry", -1, "3"}, {"txtWeapRespawn", -1, "5"},
        };
        for (const Value& v : values) {
            const QString name = QString::fromLatin1(v.name);
            const QString value = text(name, v.index);
            if (leadingNumber(value) > 0)
                seta(tag(name, v.index), value);
            else if (v.fallback)
                seta(tag(name, v.index), QString::fromLatin1(v.fallback));
        }
    }

    void gameOptions()
    {
        // "Jedi vs Merc" goes on the command line when ticked; in the file it only ever says 0.
        const QString name = QStringLiteral("chkQuake3Specific");
        constexpr int kJediVsMerc = 18;
        for (int i = lbound(name); i <= ubound(name); ++i) {
            if (!isSet(name, i)) {
                seta(tag(name, i), QStringLiteral("0"));
            } else if (i != kJediVsMerc) {
                seta(tag(name, i), QStringLiteral("1"));
                m_session.merc = false;
            } else {
                m_session.merc = true;
            }
        }
    }

    void flagFields()
    {
        line(QStringLiteral("seta g_weaponDisable ") + quoted(text(QStringLiteral("txtWeaponFlags"))) +
             QStringLiteral(" // Weapons Disabled"));
        if (isSet(QStringLiteral("optDefaultGameType"), 3))
            line(QStringLiteral("seta g_duelWeaponDisable ") + quoted(text(QStringLiteral("txtDuelWeaponFlags"))) +
                 QStringLiteral(" // Weapons Disabled Duel Only"));
        line(QStringLiteral("seta g_forcePowerDisable ") + quoted(text(QStringLiteral("txtForceFlags"))) +
             QStringLiteral(" // Force Power Disabled"));
        line(QStringLiteral("seta dmflags ") + quoted(text(QStringLiteral("txtDMFlags"))));
    }

    void masterServers()
    {
        if (!isSet(QStringLiteral("chkServerType"), 2))
            return;
        line(QStringLiteral("// ------------------- Additional Master Server List -------------------"));
        for (int n = 5; n >= 1; --n) {
            const QString name = QStringLiteral("txtMaster%1").arg(n);
            seta(tag(name), trimBlanks(text(name)));
        }
        line(QStringLiteral("// --------------------------------------------------------------------"));
        line();
    }

    void logging()
    {
        // Both frames of the array have a selected option. "Disable" of the stats frame
        // takes the game log's branch and writes its own index as the value.
        const QString name = QStringLiteral("optLogging");
        constexpr int kEnableStats = 4;
        for (int i = lbound(name); i <= ubound(name); ++i) {
            if (!isSet(name, i))
                continue;
            if (i == kEnableStats) {
                seta(tag(name, i), QStringLiteral("1"));
                setaField(QStringLiteral("txtStatsLogName"));
            } else {
                seta(tag(name, i), QString::number(i));
                setaField(QStringLiteral("txtLogFileName"));
            }
        }
        line();
    }

    void gameLimits()
    {
        const QString name = QStringLiteral("txtGameLimits");
        for (int i : {0, 1, 3, 2})
            setaField(name, i);
        line();
    }

    void memoryComment()
    {
        // Worked out here, in this order: an overflow or a port that isn't a number ends
        // the file before its note.
        const QString spin = QStringLiteral("txtServerConfigSpin");
        m_session.zone = toInt16(leadingNumber(text(spin, 11)));
        m_session.hunk = toInt16(leadingNumber(text(spin, 5)));
        m_session.sound = toInt16(leadingNumber(text(spin, 12)));
        m_session.ip = text(QStringLiteral("txtServerConfig"), 16);
        const QString port = trimBlanks(text(QStringLiteral("txtServerConfig"), 12));
        m_session.port = port.isEmpty() ? kDefaultPort : textToInt32(port);

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
        const QString key = tag(QStringLiteral("chkMapAutoCycle"));
        if (autoCycle()) {
            line(key + QStringLiteral(" \"1\""));
            line(QStringLiteral("map ") + text(QStringLiteral("cboStartingMap")));
            return;
        }
        line(key + QStringLiteral(" \"0\""));
        if (m_useSavedCycle) {
            line(QStringLiteral("Map ") + gbln_LoadMapCycle(m_app, m_profile, text(QStringLiteral("txtServerINI"))));
            return;
        }
        QString first = m_profile.startingMap();
        if (first.isEmpty())
            first = m_profile.field(QStringLiteral("lsvMapRotation")).cell(0, 0); // no rows: error 35600
        line(QStringLiteral("Map ") + first);
    }

    void cycleExec()
    {
        if (!autoCycle())
            line(QStringLiteral("exec ") + quoted(m_session.cycleFile));
    }

    /// False when a password and "Enable BOT" meet: the box is shown and nothing more
    /// is written.
    bool bots()
    {
        const QString bots = QStringLiteral("chkBOTs");
        const bool enableBots = m_profile.value(bots, 0) == 1;
        const bool userBots = m_profile.value(bots, 5) == 1;
        if (!enableBots && !userBots)
            return true;
        // The password isn't trimmed here: blanks alone still refuse.
        if (enableBots && !text(QStringLiteral("txtServerConfig"), 15).isEmpty()) {
            m_app.prompts().message(
                QStringLiteral("Arena Steward does not support adding BOT's to a password enabled server") + kTail +
                    kCrLf + QStringLiteral("either uncheck enable BOT's or remove password to continue") + kTail,
                kProductTitle, Icon::Exclamation);
            return false;
        }
        if (gbln_MakeBOTConfig(m_app, m_profile))
            line(QStringLiteral("exec \"BOTFile.cfg\""));
        return true;
    }

    void bans()
    {
        const int count = m_profile.field(QStringLiteral("lstBannedIPs")).count();
        if (count > 0 && gbln_MakeBANList(m_app, m_profile, count))
            line(QStringLiteral("exec \"BAN.cfg\""));
    }

    void additionalConfigs()
    {
        const QString name = QStringLiteral("cboConfig");
        for (int i = lbound(name); i <= ubound(name); ++i) {
            const QString config = trimBlanks(text(name, i));
            if (!config.isEmpty())
                line(QStringLiteral("exec ") + config);
        }
    }

    void end()
    {
        line(QStringLiteral("//"));
        line(QStringLiteral("writeconfig jk2mpconfig.cfg"));
        line(QStringLiteral("wait"));
        line(QStringLiteral("//EOF"));
    }

    AppContext& m_app;
    ServerProfile& m_profile;
    SessionValues& m_session;
    bool m_useSavedCycle;
    TextFileWriter& m_out;
};

/// The cycle file that the session executes: the saved one, or the one made from the
/// rotation now. False when the cycle could not be made. Auto cycling needs none.
bool prepareCycle(AppContext& app, ServerProfile& profile, bool useSavedCycle, QString& cycleFile)
{
    if (profile.isSet(QStringLiteral("chkMapAutoCycle")))
        return true;
    if (useSavedCycle) {
        cycleFile = GetNamePart(profile.text(QStringLiteral("txtServerINI")));
        return true;
    }
    return MakeMapCycle(app, profile, cycleFile, false, useSavedCycle);
}

} // namespace

bool CreateJediConfiguration(AppContext& app, ServerProfile& profile, bool exportOnly, bool useSavedCycle,
                             QString& sessionName)
{
    profile.setFormPointer(pointer::Hourglass);
    bool result = true;
    try {
        sessionName.replace(QLatin1Char(' '), QLatin1Char('_'));
        sessionName = sessionName.toLower();
        SessionValues session;
        session.sessionName = sessionName;

        if (!prepareCycle(app, profile, useSavedCycle, session.cycleFile)) {
            profile.setFormPointer(pointer::Default);
            app.prompts().message(QStringLiteral("Unable to create Map cycle") + kTail, kProductTitle,
                                  Icon::Exclamation);
            return false;
        }

        session.fileName = app.baseFolder() + QLatin1Char('/') + sessionName;
        {
            // The writer closes the file when it goes out of scope, also on the error
            // road, so the lines written before an error stay on disk.
            TextFileWriter out(session.fileName);
            if (!SessionFile(app, profile, session, useSavedCycle, out).write())
                return false; // refused: the hourglass stays until the next run
        }

        result = exportOnly ? showExportedConfiguration(app, profile, session)
                            : startServerAfterConfiguration(app, profile, session);
    } catch (const RuntimeError& error) {
        reportTagged(app, error, kErrorTag);
        result = false;
    }
    profile.setFormPointer(pointer::Default);
    return result;
}

} // namespace steward
