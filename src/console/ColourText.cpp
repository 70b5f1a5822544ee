#include "console/ColourText.h"

namespace steward {

namespace {

// A caret starts a code when a character other than a caret follows it.
bool isCode(const QString& text, qsizetype i)
{
    return text[i] == QLatin1Char('^') && i + 1 < text.size() && text[i + 1] != QLatin1Char('^');
}

} // namespace

QString colourOfCode(QChar code)
{
    // The engine takes the code's low three bits: "^8" is black again, "^a" is red.
    static const char* const colours[] = {"#000000", "#d00000", "#00a000", "#b09000",
                                          "#0000e0", "#00a0b0", "#c000c0", ""};
    return QString::fromLatin1(colours[(code.unicode() - '0') & 7]);
}

QString colourCodesToHtml(const QString& text)
{
    QString html;
    html.reserve(text.size() + 32);
    bool open = false;
    QString run;
    const auto flush = [&] {
        html += run.toHtmlEscaped().replace(QLatin1Char('\n'), QLatin1String("<br>"));
        run.clear();
    };
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (isCode(text, i)) {
            flush();
            if (open)
                html += QLatin1String("</span>");
            const QString colour = colourOfCode(text[i + 1]);
            open = !colour.isEmpty();
            if (open)
                html += QLatin1String("<span style=\"color:") + colour + QLatin1String("\">");
            ++i;
            continue;
        }
        run += text[i];
    }
    flush();
    if (open)
        html += QLatin1String("</span>");
    return html;
}

QString stripColourCodes(const QString& text)
{
    QString plain;
    plain.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (isCode(text, i)) {
            ++i;
            continue;
        }
        plain += text[i];
    }
    return plain;
}

} // namespace steward
