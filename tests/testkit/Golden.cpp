#include "testkit/Golden.h"

#include "testkit/TestApp.h"

#include <gtest/gtest.h>

#include <QFile>

namespace steward::testing {

QString goldenPath(const QString& name) { return QStringLiteral(STEWARD_EXPECTED_DIR "/") + name; }

QByteArray goldenBytes(const QString& name)
{
    QFile f(goldenPath(name));
    if (!f.open(QIODevice::ReadOnly)) {
        ADD_FAILURE() << "no expected file " << goldenPath(name).toStdString();
        return {};
    }
    return f.readAll();
}

QStringList goldenLines(const QString& name)
{
    QStringList lines = QString::fromLatin1(goldenBytes(name)).split(QStringLiteral("\r\n"));
    if (!lines.isEmpty() && lines.last().isEmpty())
        lines.removeLast();
    return lines;
}

void expectGolden(const QString& path, const QString& name)
{
    ASSERT_TRUE(QFile::exists(path)) << path.toStdString();
    if (qEnvironmentVariableIsSet("STEWARD_BLESS")) { // a change on purpose: the program's file is the new expected one
        QFile::remove(goldenPath(name));
        ASSERT_TRUE(QFile::copy(path, goldenPath(name))) << name.toStdString();
    }
    EXPECT_EQ(crlfLines(path), goldenLines(name));
    EXPECT_TRUE(fileBytes(path) == goldenBytes(name)) << path.toStdString() << " differs from " << name.toStdString();
}

} // namespace steward::testing
