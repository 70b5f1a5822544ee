#include "bots/BotModelScan.h"

#include "bots/BotRosterFile.h"
#include "maps/ArchiveReader.h"
#include "maps/LineTokeniser.h"
#include "maps/MapScanner.h"
#include "maps/ScanProgress.h"
#include "platform/Prompts.h"
#include "support/AppContext.h"
#include "model/Constants.h"
#include "support/ErrorReporter.h"
#include "support/Errors.h"
#include "support/Strings.h"
#include "support/TextFile.h"

namespace steward {

namespace {
const QString kScanTag = QStringLiteral("::CMapScanner.ExtractLevelShots(Function)");
} // namespace

QString playerModelOfEntry(const QString& entryText)
{
    // "models\players\kyle2\|model.glm": the fields models, players, kyle2 and the name.
    // The folder models\players itself gives "|" as its third field: no model.
    const LineTokeniser fields = [&] {
        LineTokeniser t(QStringLiteral("\\"));
        t.setText(entryText);
        return t;
    }();
    if (fields.field(1).toLower() != QLatin1String("models") || fields.field(2).toLower() != QLatin1String("players"))
        return {};
    const QString model = fields.field(3);
    if (model.isEmpty() || model.startsWith(QLatin1Char('|')))
        return {};
    return model;
}

bool isModelArchive(const QString& fileName)
{
    const QString upper = fileName.toUpper();
    return upper.endsWith(QLatin1String("PK3")) && upper != QLatin1String("ASSETS0.PK3") &&
           upper != QLatin1String("ASSETS1.PK3") && upper != QLatin1String("ASSETS2.PK3");
}

bool ScanBotModels(AppContext& app, ScanProgress& progress, const QString& folder, const QString& subfolder)
{
    try {
        progress.setActivity(QString());
        progress.show();
        progress.setBusy(true);

        QString path;
        const QStringList files = baseFolderFiles(app, folder, subfolder, &path);
        progress.setMaximum(static_cast<int>(files.size()));
        progress.setValue(1);

        TextFileWriter list(app.programFile(kBotListFile));
        int found = 0;
        int counter = 0;
        ArchiveReader reader;
        for (const QString& file : files) {
            progress.setValue(++counter);
            if (!isModelArchive(file))
                continue;
            progress.setActivity(QStringLiteral("Scanning ") + file + QStringLiteral(" ...."));
            try {
                reader.open(path + QLatin1Char('/') + file);
            } catch (const RuntimeError& e) {
                if (e.number() != err::BadArchive)
                    throw;
                // A damaged or foreign file: noted in the log, and on to the next one.
                reportTagged(app, e, kScanTag, false, false);
                continue;
            }
            for (int i = 0; i < reader.entryCount(); ++i) {
                const QString model = playerModelOfEntry(reader.entryText(i));
                if (model.isEmpty())
                    continue;
                list.line(delimitedLine({model, file}, QLatin1Char(',')));
                ++found;
                break;
            }
            reader.close();
        }

        progress.setValue(0);
        progress.hide();
        list.close();
        progress.setBusy(false);
        if (found != 0)
            app.prompts().message(QStringLiteral("BOT scan complete. %1 have been found").arg(found) + kTail,
                                  kProductTitle, Icon::Information);
        else
            app.prompts().message(QStringLiteral("No BOT's found") + kTail, kProductTitle, Icon::Information);
        return true;
    } catch (const RuntimeError& e) {
        reportTagged(app, e, kScanTag, false, true);
        return false; // not reached: the report throws the error on
    }
}

QList<QStringList> LoadBotList(AppContext& app)
{
    QList<QStringList> rows{{QStringLiteral("BOT Name"), QStringLiteral("PK3")}};
    const QString file = app.programFile(kBotListFile);
    if (FileExists(file))
        for (const QString& line : readLines(file))
            rows << delimitedRow(line, QLatin1Char(','), 2);
    return rows;
}

} // namespace steward
