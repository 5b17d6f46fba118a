#pragma once

#include <QBrush>
#include <QPixmap>
#include <QRect>
#include <QString>

class QWidget;

// Process-wide state of the widget kit: the language, the house fonts, the
// colour database and the named styles read from the style-sheet description
// files, and the save-file dialog. All functions run on the GUI thread.
namespace Custom {

// Language values as the program stores them: 0 Chinese, anything else English.
enum Language { Chinese = 0, English = 1 };

// The current language: 0 for Chinese, non-zero for English (default English).
int language();
// Sets the language. The kit's own texts follow the installed translators;
// this value picks the house font of the language and lets widgets choose
// language-dependent sizes.
void setLanguage(int nLanguage);

// Registers a style-sheet description file (for example a resource path) and
// loads its colours and named styles at once; later files override earlier
// keys. Returns false when the file cannot be read or parsed (nothing of a
// broken file is kept).
bool addXmlPath(const QString &strPath);
// The files registered so far, in order.
QStringList xmlPaths();

// Sets the font family used for a language. When that family is not
// installed (e.g. "Microsoft YaHei" on Linux), it is mapped to an installed
// CJK-capable sans family so text still renders with the asked-for name.
// When the language is the current one, the application font follows.
void setGlobalFontFamily(Language eLanguage, const QString &strFamily);
// The same with the language as its stored value (0 Chinese, other English).
void setGlobalFontFamily(int nLanguage, const QString &strFamily);
// The family set for a language (the current language by default); the
// application's font family when none was set.
QString globalFontFamily(int nLanguage = -1);

// The brush stored under a colour key. Keys are looked up as given and with
// or without the "DB_COLOR_" prefix. Gradients are laid out over rect (their
// stops are given in 0..1 of the rect). An unknown key yields Qt::NoBrush.
QBrush getDataBaseColor(const QString &strKey, const QRect &rect = QRect(0, 0, 100, 100));
// Whether a colour key is known (with the same prefix rule).
bool hasDataBaseColor(const QString &strKey);
// The colour key as a style-sheet brush: "qlineargradient(...)" for a
// gradient (over the styled widget), "#rrggbb" or "rgba(...)" for a colour,
// empty for an unknown key.
QString styleSheetBrush(const QString &strKey);
// The style sheet text stored under a style selector name; empty if unknown.
QString styleSheetForSelector(const QString &strSelector);
// Resolves a colour text: "#RRGGBB", "#AARRGGBB", an SVG colour name or a
// colour key of the database. Invalid colour when nothing matches.
QColor resolveColor(const QString &strColorOrKey);

// Asks the user for a file to write. The dialog starts in strDir with the
// proposed file name strFileName (the suffix strSuffix is appended when the
// name has none) and the name filter strFilter ("Text(*.txt);;Any(*)"; when
// empty, one is made from the suffix). A name typed without a suffix gets
// strSuffix. Returns the chosen absolute path, or an empty string when the
// user cancels.
QString getSaveFileName(QWidget *pParent, const QString &strCaption, const QString &strDir,
                        const QString &strFileName, const QString &strSuffix,
                        const QString &strFilter = QString());
// The path the save dialog proposes: strDir joined with the file name, with
// ".suffix" appended when the name lacks it. Exposed for testing.
QString composeSavePath(const QString &strDir, const QString &strFileName, const QString &strSuffix);
// The name filter the save dialog offers: strFilter when given, otherwise
// "*.suffix" (or "*" without suffix). Exposed for testing.
QString composeSaveFilter(const QString &strFilter, const QString &strSuffix);

// Loads an image for painting at the given device pixel ratio, preferring the
// "@2x" file when the ratio is above 1 and such a file exists.
QPixmap loadPixmap(const QString &strPath, qreal dDevicePixelRatio = 1.0);

} // namespace Custom
