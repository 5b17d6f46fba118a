#pragma once

#include <QColor>
#include <QString>

// The kit's house colours. Each can be overridden in the style-sheet
// description with a Color entry of the same key; the second value is the
// built-in default.
namespace KitStyle {

QColor color(const char *pKey, const char *pDefault);
QString css(const char *pKey, const char *pDefault);

inline QString accent() { return css("Panekit_Accent", "#1E7BE6"); }
inline QString accentHover() { return css("Panekit_AccentHover", "#3A8EF0"); }
inline QString accentPressed() { return css("Panekit_AccentPressed", "#1766C2"); }
inline QString accentLight() { return css("Panekit_AccentLight", "#EAF2FD"); }
inline QString text() { return css("Panekit_Text", "#23262B"); }
inline QString textSecondary() { return css("Panekit_TextSecondary", "#5C6370"); }
inline QString textDisabled() { return css("Panekit_TextDisabled", "#A4ABB6"); }
inline QString border() { return css("Panekit_Border", "#D9DEE6"); }
inline QString divider() { return css("Panekit_Divider", "#EBEEF2"); }
inline QString window() { return css("Panekit_Window", "#FFFFFF"); }
inline QString header() { return css("Panekit_Header", "#F4F6F9"); }
inline QString hover() { return css("Panekit_Hover", "#EEF2F7"); }
inline QString disabledFill() { return css("Panekit_DisabledFill", "#C5CFDC"); }

// Whether a window manager composites windows, so translucent frame
// shadows show as shadows (platform file).
bool compositingActive();

} // namespace KitStyle
