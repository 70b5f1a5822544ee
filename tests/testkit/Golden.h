#pragma once
// Expected files kept beside the tests, in tests/expected/<name>, byte for byte as the
// program must write them (CR LF included; .gitattributes keeps git from touching them).
#include <QByteArray>
#include <QString>
#include <QStringList>

namespace steward::testing {

/// The path of an expected file.
QString goldenPath(const QString& name);
/// The bytes of an expected file; a missing file fails the test that asks.
QByteArray goldenBytes(const QString& name);
/// An expected file's lines, split at CR LF.
QStringList goldenLines(const QString& name);
/// A generated file against its expected file: line by line for a readable difference,
/// then byte for byte. With STEWARD_BLESS set, the generated file first replaces the
/// expected one, for a change made on purpose (read the difference in git before a commit).
void expectGolden(const QString& path, const QString& name);

} // namespace steward::testing
