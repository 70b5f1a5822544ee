#pragma once
// Generated text files: 8-bit Latin-1 text, every line ended by CR LF, an existing file
// replaced. A file that can't be opened is error 76 (no folder) or 75 (no access).
#include <QFile>
#include <QString>
#include <QStringList>

namespace steward {

/// Where a writer puts its lines, one at a time, so that the lines before a failure
/// are kept.
class LineSink {
public:
    virtual ~LineSink() = default;
    virtual void line(const QString& text = {}) = 0;
};

/// Lines kept in memory.
class LineList final : public LineSink {
public:
    void line(const QString& text = {}) override { lines << text; }
    QStringList lines;
};

class TextFileWriter final : public LineSink {
public:
    /// Opens the file for output, replacing it; throws RuntimeError on failure.
    explicit TextFileWriter(const QString& fileName);
    ~TextFileWriter();
    TextFileWriter(const TextFileWriter&) = delete;
    TextFileWriter& operator=(const TextFileWriter&) = delete;

    /// Writes the text and CR LF.
    void line(const QString& text = {}) override;
    /// Writes the text without a line end.
    void write(const QString& text);
    void close();
    const QString& fileName() const { return m_fileName; }

private:
    QString m_fileName;
    QFile m_file;
};

/// Throws the error that fits a file that could not be opened for writing.
[[noreturn]] void raiseOpenError(const QString& fileName);

/// Appends lines with CR LF; false on failure, nothing thrown.
bool appendLines(const QString& fileName, const QStringList& lines);

/// Reads a whole 8-bit text file and splits it at CR LF, CR or LF.
QStringList readLines(const QString& fileName);
/// The lines of 8-bit text, split at CR LF, CR or LF; a last line end gives no empty line.
QStringList textLines(const QByteArray& bytes);

} // namespace steward
