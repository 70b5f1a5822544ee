#pragma once
// Generated files held against whole expected files: a variant names only the lines it
// changes, and the comparison is line by line for a readable difference, then byte for byte.
#include "testkit/BoxExpect.h"
#include "testkit/Golden.h"
#include "testkit/Printers.h"
#include "testkit/TestApp.h"

#include <gtest/gtest.h>

#include <QFile>
#include <utility>
#include <vector>

namespace steward::testing {
using namespace Qt::StringLiterals;

inline QString seta(const QString& key, const QString& value) { return u"seta %1 \"%2\""_s.arg(key, value); }

/// One line of the expected file (or the first that starts so) exchanged for none, one or several.
struct Change {
    QString line;
    QStringList replacement;
    bool start = false;
};

/// One setting's line with another value.
inline Change value(const QString& key, const QString& was, const QString& is)
{
    return {seta(key, was), {seta(key, is)}};
}
/// The setting's line, whatever its value in the expected file, with this value.
inline Change to(const QString& key, const QString& is) { return {u"seta %1 \""_s.arg(key), {seta(key, is)}, true}; }
/// The line itself, then the new ones behind it.
inline Change after(const QString& line, const QStringList& added) { return {line, QStringList{line} + added}; }

/// The changes in file order: each one is looked for behind the one before it, so that a
/// line standing twice can be told apart.
inline QStringList changed(QStringList lines, const std::vector<Change>& changes)
{
    qsizetype from = 0;
    for (const Change& c : changes) {
        auto at = lines.indexOf(c.line, from);
        for (qsizetype i = from; c.start && at < 0 && i < lines.size(); ++i)
            at = lines.at(i).startsWith(c.line) ? i : at;
        if (at < 0) {
            ADD_FAILURE() << "the expected file has no line " << c.line.toStdString() << " from line " << from + 1;
            continue;
        }
        lines.remove(at);
        for (qsizetype i = 0; i < c.replacement.size(); ++i)
            lines.insert(at + i, c.replacement.at(i));
        from = at + c.replacement.size();
    }
    return lines;
}

/// The lines before the first one equal to stop, or up to and with it.
inline QStringList cutAt(const QStringList& lines, const QString& stop, bool keepStop)
{
    const auto at = lines.indexOf(stop);
    EXPECT_GE(at, 0) << stop.toStdString();
    return lines.mid(0, at + (keepStop ? 1 : 0));
}

inline void expectFile(const QString& path, const QStringList& expected)
{
    ASSERT_TRUE(QFile::exists(path)) << path.toStdString();
    EXPECT_EQ(crlfLines(path), expected);
    EXPECT_TRUE(fileBytes(path) == crlfText(expected)) << "every line ends in CR LF, the last one too";
}

inline void expectFile(const QString& path, const QString& golden, const std::vector<Change>& changes)
{
    expectFile(path, changed(goldenLines(golden), changes));
}

/// The boxes shown since the last look are this one alone; the next look starts afresh.
inline ::testing::AssertionResult onlyBox(TestApp& t, const Box& box)
{
    const std::vector<FakePrompts::Shown> shown = std::exchange(t.prompts.shown, {});
    if (shown.size() != 1)
        return ::testing::AssertionFailure() << shown.size() << " boxes shown instead of one";
    return isBox(shown.front(), box);
}

template <class Case>
std::string caseName(const ::testing::TestParamInfo<Case>& param)
{
    return param.param.name;
}

} // namespace steward::testing
