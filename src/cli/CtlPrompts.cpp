#include "cli/CtlPrompts.h"

#include <QRegularExpression>
#include <QTextStream>

namespace steward {

QString CtlPrompts::plainText(const QString& text)
{
    QStringList lines = QString(text).replace(QStringLiteral("\r\n"), QStringLiteral("\n")).split(QLatin1Char('\n'));
    for (QString& line : lines)
        line = line.trimmed();
    lines.removeAll(QString());
    return lines.join(QLatin1Char('\n'));
}

Answer CtlPrompts::messageBox(const MessageBoxRequest& request)
{
    const QString text = plainText(request.text);
    m_err << text << Qt::endl;
    if (request.icon == Icon::Exclamation || request.icon == Icon::Critical) {
        if (m_refusal.isEmpty())
            m_refusal = text;
    }
    switch (request.buttons) {
    case Buttons::Ok:
        return Answer::Ok;
    case Buttons::OkCancel:
        return request.defaultButton == 1 ? Answer::Cancel : Answer::Ok;
    case Buttons::YesNo:
    case Buttons::YesNoCancel:
        // Nothing is ever done on the user's behalf: a question is answered No.
        return Answer::No;
    case Buttons::RetryCancel:
        return Answer::Cancel;
    case Buttons::AbortRetryIgnore:
        return Answer::Abort;
    }
    return Answer::Cancel;
}

bool CtlPrompts::fileDialog(FileDialogState&, bool) { return false; }

} // namespace steward
