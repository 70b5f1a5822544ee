// The game's colour codes as rich text: colours, escaping, and the carets that are no code.
#include "console/ColourText.h"

#include <gtest/gtest.h>

using namespace steward;

TEST(ColourText, CodesBecomeSpansAndEverythingIsEscaped)
{
    const std::pair<QString, QString> cases[] = {
        {QStringLiteral("plain"), QStringLiteral("plain")},
        {QStringLiteral("^1red^2green"),
         QStringLiteral("<span style=\"color:#d00000\">red</span><span style=\"color:#00a000\">green</span>")},
        {QStringLiteral("^1a^7b"), QStringLiteral("<span style=\"color:#d00000\">a</span>b")},
        {QStringLiteral("^9x"), QStringLiteral("<span style=\"color:#d00000\">x</span>")},
        {QStringLiteral("^^1"), QStringLiteral("^<span style=\"color:#d00000\"></span>")},
        {QStringLiteral("end^"), QStringLiteral("end^")},
        {QStringLiteral("<b>&\"</b>"), QStringLiteral("&lt;b&gt;&amp;&quot;&lt;/b&gt;")},
        {QStringLiteral("^1<script>"), QStringLiteral("<span style=\"color:#d00000\">&lt;script&gt;</span>")},
        {QStringLiteral("a\nb"), QStringLiteral("a<br>b")},
        {QStringLiteral("^"), QStringLiteral("^")},
        {QString(), QString()},
    };
    for (const auto& [text, html] : cases)
        EXPECT_EQ(colourCodesToHtml(text), html) << text.toStdString();
}

TEST(ColourText, StrippingLeavesTheText)
{
    EXPECT_EQ(stripColourCodes(QStringLiteral("^1Steward ^7Arena^")), QStringLiteral("Steward Arena^"));
    EXPECT_EQ(stripColourCodes(QStringLiteral("^^2")), QStringLiteral("^"));
    EXPECT_EQ(colourOfCode(QLatin1Char('7')), QString());
    EXPECT_EQ(colourOfCode(QLatin1Char('0')), QStringLiteral("#000000"));
}
