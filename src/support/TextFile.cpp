#include "support/TextFile.h"

#include "support/Errors.h"

#include <QDir>
#include <QFileInfo>

namespace steward {

void raiseOpenError(const QString& fileName)
{
    const QFileInfo info(fileName);
    if (!info.absoluteDir().exists())
        raiseError(err::PathNotFound, {}, fileName);
    raiseError(err::PathFileAccess, {}, fileName);
}

TextFileWriter::TextFileWriter(const QString& fileName) : m_fileName(fileName), m_file(fileName)
{
    if (fileName.isEmpty())
        raiseError(err::BadFileName);
    if (QFileInfo(fileName).isDir() || !m_file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        raiseOpenError(fileName);
}

TextFileWriter::~TextFileWriter() { close(); }

void TextFileWriter::write(const QString& text)
{
    if (!m_file.isOpen())
        raiseError(err::BadFileName);
    const QByteArray bytes = text.toLatin1();
    if (m_file.write(bytes) != bytes.size())
        raiseError(err::PathFileAccess, {}, m_fileName);
}

void TextFileWriter::line(const QString& text) { write(text + QStringLiteral("\r\n")); }

void TextFileWriter::close()
{
    if (m_file.isOpen())
        m_file.close();
}

bool appendLines(const QString& fileName, const QStringList& lines)
{
    QFile file(fileName);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Append))
        return false;
    QByteArray bytes;
    for (const QString& l : lines)
        bytes += l.toLatin1() + "\r\n";
    return file.write(bytes) == bytes.size();
}

QStringList readLines(const QString& fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly)) {
        if (!QFileInfo::exists(fileName))
            raiseError(err::FileNotFound, {}, fileName);
        raiseError(err::PathFileAccess, {}, fileName);
    }
    return textLines(file.readAll());
}

QStringList textLines(const QByteArray& bytes)
{
    QString text = QString::fromLatin1(bytes);
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n")).replace(QLatin1Char('\r'), QLatin1Char('\n'));
    QStringList lines = text.split(QLatin1Char('\n'));
    if (!lines.isEmpty() && lines.last().isEmpty())
        lines.removeLast();
    return lines;
}

} // namespace steward
