// The pieces of a wizard or prompt page: rich text in the desktop's sans-serif font with the
// colour table black, blue, red, plain paragraphs and numbered lines with hanging indents.
// Used by the in-run prompts and by both wizards.
#pragma once

#include <QString>

namespace page {

// The page's colours.
inline constexpr const char *kBlue = "#0000ff";
inline constexpr const char *kRed = "#ff0000";

inline QString Esc(const QString &s) { return s.toHtmlEscaped(); }

// A plain paragraph, left indent 100 twips.
inline QString Para(const QString &html)
{
    return QStringLiteral("<p style=\"margin-left:7px\">") + html + QStringLiteral("</p>");
}

// A numbered line with its hanging indent: first line -220 twips, left 320 twips.
inline QString Numbered(const QString &html)
{
    return QStringLiteral("<p style=\"margin-left:21px; text-indent:-15px\">") + html + QStringLiteral("</p>");
}

inline QString Coloured(const char *colour, const QString &text)
{
    return QStringLiteral("<span style=\"color:") + QString::fromLatin1(colour) + QStringLiteral("\">") + Esc(text) +
           QStringLiteral("</span>");
}

} // namespace page
