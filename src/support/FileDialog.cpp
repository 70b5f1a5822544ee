#include "support/FileDialog.h"

#include "support/AppContext.h"
#include "support/ErrorReporter.h"
#include "support/Errors.h"

namespace steward {

QString TrimNulls(const QString& text)
{
    const QString pair = QString(2, QChar(0));
    const auto at = text.indexOf(pair);
    if (at < 0)
        return text;
    QString kept = text.left(at);
    return kept.replace(QChar(0), QLatin1Char(' '));
}

bool CFileDialog::Show(bool fOpen)
{
    try {
        // The buffers hold MaxFileSize characters.
        if (FileName.size() > MaxFileSize || FileTitle.size() > MaxFileSize)
            raiseError(err::InvalidProcedureCall);
        FileDialogState state = *this;
        if (!m_app.prompts().fileDialog(state, fOpen))
            return false;
        // Only the two buffers come back; every other property keeps what the caller set.
        FileName = TrimNulls(state.FileName);
        FileTitle = TrimNulls(state.FileTitle);
        return true;
    } catch (const RuntimeError& e) {
        reportPlain(m_app, e, QStringLiteral("Show"));
        return false;
    }
}

CCursor::CCursor(Prompts& prompts) : m_prompts(prompts), m_stored(prompts.screenPointer()) {}

CCursor::~CCursor()
{
    // With the default stored nothing happens: a caller that wants it back restores it.
    if (m_stored != pointer::Default)
        m_prompts.setScreenPointer(m_stored);
}

void CCursor::SetCursor(int cursor) { m_prompts.setScreenPointer(cursor); }

void CCursor::RestoreCursor() { m_prompts.setScreenPointer(m_stored); }

} // namespace steward
