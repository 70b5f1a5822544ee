#pragma once
// What the map tests share: archives from a list of entries, the errors the readers
// throw, folder listings, and a program whose scan shows a recording progress window.
#include "maps/LevelShots.h"
#include "maps/MapScanner.h"
#include "support/Errors.h"
#include "testkit/Printers.h"
#include "testkit/RecordingScanProgress.h"
#include "testkit/TestApp.h"
#include "testkit/ZipBuilder.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <functional>
#include <gtest/gtest.h>

namespace steward::testing {
using namespace Qt::StringLiterals;

struct Entry {
    Entry(const char* entryName, QByteArray bytes = "x") : name(QString::fromUtf8(entryName)), data(std::move(bytes)) {}
    Entry(QString entryName, QByteArray bytes = "x") : name(std::move(entryName)), data(std::move(bytes)) {}
    QString name;
    QByteArray data;
};
inline Entry entry(const QString& name, const QByteArray& data) { return {name, data}; }

/// An archive of these deflated entries in their order; a name that ends in / is a folder.
inline ZipBuilder zipOf(std::initializer_list<Entry> entries)
{
    ZipBuilder zip;
    for (const Entry& e : entries)
        e.name.endsWith(u'/') ? zip.folder(e.name) : zip.file(e.name, e.data);
    return zip;
}

/// The error an action throws: its number and description, or 0 and nothing.
inline std::pair<int, QString> thrown(const std::function<void()>& action)
{
    try {
        action();
    } catch (const RuntimeError& e) {
        return {e.number(), e.description()};
    }
    return {0, QString()};
}
inline int errorNumberOf(const std::function<void()>& action) { return thrown(action).first; }

/// The files below a folder, relative to it, sorted.
inline QStringList filesUnder(const QString& folder)
{
    QStringList found;
    QDirIterator it(folder, QDir::Files | QDir::Hidden | QDir::System, QDirIterator::Subdirectories);
    while (it.hasNext())
        found << it.next().mid(folder.size() + 1);
    found.sort();
    return found;
}

// A run-length true-colour picture of one colour: full runs of 128 pixels.
inline QByteArray runLengthPicture(int width, int height)
{
    QByteArray data = tgaHeader(10, width, height, 24);
    for (qint64 left = static_cast<qint64>(width) * height; left > 0; left -= 128)
        data.append(static_cast<char>(0x80 | (std::min<qint64>(left, 128) - 1))).append("\x10\x20\x30", 3);
    return data;
}

class ScanTest : public ::testing::Test {
protected:
    void SetUp() override { t.app->services.scanProgress = &progress; }

    void pk3(const QString& name, const ZipBuilder& zip) { ASSERT_TRUE(zip.write(t.baseFolder() + u'/' + name)); }
    void pk3(const QString& name, std::initializer_list<Entry> entries) { pk3(name, zipOf(entries)); }
    QString shots() const { return t.programFolder() + u"/levelshots"_s; }
    QStringList pictures() const { return QDir(shots()).entryList(QDir::Files, QDir::Name); }
    QString log() const { return QString::fromUtf8(fileBytes(t.programFolder() + u"/arena-steward.log"_s)); }
    QStringList catalogue() const { return crlfLines(t.programFolder() + u"/Jedi.aml"_s); }
    bool scan(MapScanChain* chain = nullptr)
    {
        return ScanForMaps(*t.app, u"Base"_s, u"Jedi"_s, t.gameFolder(), chain);
    }
    bool extract(MapScanChain* chain = nullptr) { return ExtractLevelShots(*t.app, u"Base"_s, t.gameFolder(), chain); }

    TestApp t;
    RecordingScanProgress progress;
};

} // namespace steward::testing
