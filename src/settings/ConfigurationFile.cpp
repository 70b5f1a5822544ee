#include "settings/ConfigurationFile.h"

#include "platform/Prompts.h"
#include "settings/SaveSettings.h"
#include "settings/SettingsStore.h"
#include "support/AppContext.h"
#include "model/Constants.h"
#include "support/Errors.h"
#include "support/FileDialog.h"
#include "support/TextFile.h"

#include <QFile>
#include <QFileInfo>

namespace steward {

namespace {

const QString kNotFound = QStringLiteral("Registry settings not found!");

void setUpDialog(CFileDialog& dialog, const AppContext& app, const QString& title)
{
    dialog.DialogTitle = title;
    dialog.Filter = QStringLiteral("Arena Steward Configuration (*asc)|*.asc");
    dialog.DefaultExt = QStringLiteral("asc");
    dialog.InitialDir = app.gameFolder;
}

void warn(AppContext& app, const QString& text) { app.prompts().message(text, kProductTitle, Icon::Exclamation); }

void inform(AppContext& app, const QString& text) { app.prompts().message(text, kProductTitle, Icon::Information); }

// The same error with a description that names what failed.
RuntimeError fileError(const RuntimeError& e, const QString& action, const QString& path)
{
    return RuntimeError(e.number(), QStringLiteral("%1 %2 (%3)").arg(action, path, e.description()), e.source());
}

} // namespace

void writeConfigurationFile(const QString& path, const QList<QPair<QString, QString>>& rows)
{
    try {
        TextFileWriter out(path);
        // The copy holds the passwords of the store: readable by its owner only.
        QFile::setPermissions(path, QFileDevice::ReadOwner | QFileDevice::WriteOwner);
        for (const auto& [key, value] : rows)
            if (!key.isEmpty())
                out.line(key + QLatin1Char(',') + value);
        out.close();
    } catch (const RuntimeError& e) {
        throw fileError(e, QStringLiteral("Could not write"), path);
    }
}

namespace {

QString readConfigurationText(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        if (!QFileInfo::exists(path))
            raiseError(err::FileNotFound, QStringLiteral("Could not find %1").arg(path));
        raiseError(err::PathFileAccess, QStringLiteral("Could not read %1").arg(path));
    }
    return QString::fromLatin1(file.readAll());
}

bool isLineEnd(QChar c) { return c == QLatin1Char('\r') || c == QLatin1Char('\n'); }

} // namespace

QStringList readConfigurationFields(const QString& text)
{
    const qsizetype n = text.size();
    qsizetype pos = 0;

    auto readField = [&]() -> QString {
        if (pos >= n)
            raiseError(err::InputPastEnd, QStringLiteral("The configuration file ends in the middle of a setting"));
        while (pos < n && (text.at(pos) == QLatin1Char(' ') || text.at(pos) == QLatin1Char('\t')))
            ++pos;
        QString field;
        if (pos < n && text.at(pos) == QLatin1Char('"')) {
            ++pos;
            qsizetype close = text.indexOf(QLatin1Char('"'), pos);
            if (close < 0)
                close = n;
            field = text.mid(pos, close - pos);
            pos = std::min(close + 1, n);
            while (pos < n && text.at(pos) != QLatin1Char(',') && !isLineEnd(text.at(pos)))
                ++pos; // what follows the closing quote up to the field's end is dropped
        } else {
            const qsizetype start = pos;
            while (pos < n && text.at(pos) != QLatin1Char(',') && !isLineEnd(text.at(pos)))
                ++pos;
            field = text.mid(start, pos - start);
        }
        if (pos < n) {
            if (text.at(pos) == QLatin1Char(',')) {
                ++pos;
            } else if (text.at(pos) == QLatin1Char('\r')) {
                ++pos;
                if (pos < n && text.at(pos) == QLatin1Char('\n'))
                    ++pos;
            } else {
                ++pos;
            }
        }
        return field;
    };

    QStringList fields;
    while (pos < n) {
        fields << readField();
        fields << readField();
    }
    if (fields.isEmpty())
        raiseError(err::SubscriptOutOfRange, QStringLiteral("The configuration file holds no settings"));
    return fields;
}

QList<QPair<QString, QString>> readConfigurationFile(const QString& path)
{
    const QStringList fields = readConfigurationFields(readConfigurationText(path));
    QList<QPair<QString, QString>> rows;
    for (qsizetype i = 0; i + 1 < fields.size(); i += 2)
        rows.append({fields.at(i), fields.at(i + 1)});
    return rows;
}

QString resetWarningText()
{
    return QStringLiteral("WARNING - All Arena Steward settings will be lost. It is") + kTail + kCrLf +
           QStringLiteral("recommended that you backup your configuration first.") + kTail + kCrLf + kCrLf + kTail +
           kTail + QStringLiteral("Do you wish to continue?") + kTail;
}

void SaveConfiguration(AppContext& app)
{
    try {
        const auto rows = app.store().GetAllSettings();
        if (rows.isEmpty()) {
            warn(app, kNotFound + kTail);
            return;
        }
        CFileDialog dialog(app);
        setUpDialog(dialog, app, QStringLiteral("Save Arena Steward configuration file"));
        dialog.Show(false);
        const QString path = dialog.FileName;
        if (path.isEmpty())
            return;
        if (QFileInfo::exists(path) &&
            app.prompts().message(QStringLiteral("Over-write existing file?") + kTail, kProductTitle, Icon::Question,
                                  Buttons::YesNo) == Answer::No)
            return;
        writeConfigurationFile(path, rows);
        inform(app, QStringLiteral("'") + path + QStringLiteral("' configuration saved") + kTail);
    } catch (const RuntimeError& e) {
        warn(app, e.description());
    }
}

void UtilitiesConfigurationSave(AppContext& app, ServerProfile& profile)
{
    askSaveChangedConfiguration_Save(app, profile);
    SaveConfiguration(app);
}

bool loadConfigurationIntoStore(AppContext& app)
{
    CFileDialog dialog(app);
    setUpDialog(dialog, app, QStringLiteral("Load Arena Steward configuration file"));
    dialog.Show(true);
    const QString path = dialog.FileName;
    if (path.isEmpty())
        return false;
    try {
        // The whole file is read before the store is touched.
        const auto rows = readConfigurationFile(path);
        SettingsStore& store = app.store();
        SettingsBatch batch(store);
        for (const auto& [key, value] : rows)
            store.SaveSetting(key, value);
        batch.commit();
    } catch (const RuntimeError& e) {
        warn(app, e.description());
        return false;
    }
    inform(app, QStringLiteral("Arena Steward will now restart to load settings") + kTail);
    return true;
}

bool resetStore(AppContext& app)
{
    if (app.prompts().message(resetWarningText(), kProductTitle, Icon::Exclamation, Buttons::YesNo, 1) != Answer::Yes)
        return false;
    try {
        SettingsStore& store = app.store();
        const auto rows = store.GetAllSettings();
        if (rows.isEmpty()) {
            warn(app, kNotFound + kTail);
            return false;
        }
        // Key by key; the section itself is not addressed.
        SettingsBatch batch(store);
        for (const auto& row : rows)
            if (!row.first.isEmpty())
                store.DeleteSetting(row.first);
        batch.commit();
    } catch (const RuntimeError&) {
        warn(app, QStringLiteral("Could not reset registry settings") + kTail);
        return false;
    }
    inform(app, QStringLiteral("Arena Steward will now restart") + kTail);
    return true;
}

} // namespace steward
