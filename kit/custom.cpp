#include "custom.h"

#include <QApplication>
#include <QColor>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QFont>
#include <QFontDatabase>
#include <QHash>
#include <QLinearGradient>
#include <QMap>
#include <QXmlStreamReader>

namespace {

// One colour database entry: a solid colour, or a linear gradient whose end
// points are fractions of the painted rectangle.
struct ColorEntry {
    QColor color;
    bool bGradient = false;
    QPointF ptStart, ptEnd;
    QGradientStops stops;
};

struct KitState {
    int nLanguage = Custom::English;
    QMap<int, QString> mapFontFamily;
    QStringList listXmlPath;
    QHash<QString, ColorEntry> mapColor;
    QHash<QString, QString> mapStyle;
};

KitState &state()
{
    static KitState s;
    return s;
}

const QString kColorPrefix = QStringLiteral("DB_COLOR_");

const ColorEntry *findColor(const QString &strKey)
{
    const KitState &s = state();
    auto it = s.mapColor.constFind(strKey);
    if (it != s.mapColor.constEnd())
        return &it.value();
    const QString strOther = strKey.startsWith(kColorPrefix) ? strKey.mid(kColorPrefix.size())
                                                             : kColorPrefix + strKey;
    it = s.mapColor.constFind(strOther);
    return it != s.mapColor.constEnd() ? &it.value() : nullptr;
}

QColor parseColor(const QString &strText)
{
    const QString strTrimmed = strText.trimmed();
    if (strTrimmed.isEmpty() || !QColor::isValidColor(strTrimmed))
        return QColor();
    return QColor(strTrimmed);
}

// Reads one description file into the given maps; false on any error.
bool parseXml(const QString &strPath, QHash<QString, ColorEntry> &mapColor, QHash<QString, QString> &mapStyle)
{
    QFile file(strPath);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    QXmlStreamReader xml(&file);
    ColorEntry gradient;
    QString strGradientKey;
    while (!xml.atEnd()) {
        xml.readNext();
        if (xml.isStartElement()) {
            const QXmlStreamAttributes attrs = xml.attributes();
            const QStringRef name = xml.name();
            if (name == QLatin1String("Color")) {
                const QString strKey = attrs.value(QLatin1String("key")).toString();
                const QColor color = parseColor(attrs.value(QLatin1String("value")).toString());
                if (strKey.isEmpty() || !color.isValid())
                    return false;
                ColorEntry entry;
                entry.color = color;
                mapColor.insert(strKey, entry);
            } else if (name == QLatin1String("Gradient")) {
                strGradientKey = attrs.value(QLatin1String("key")).toString();
                if (strGradientKey.isEmpty())
                    return false;
                gradient = ColorEntry();
                gradient.bGradient = true;
                gradient.ptStart = QPointF(attrs.value(QLatin1String("x1")).toDouble(),
                                           attrs.value(QLatin1String("y1")).toDouble());
                gradient.ptEnd = QPointF(attrs.value(QLatin1String("x2")).toDouble(),
                                         attrs.value(QLatin1String("y2")).toDouble());
            } else if (name == QLatin1String("Stop")) {
                const QColor color = parseColor(attrs.value(QLatin1String("color")).toString());
                bool bOk = false;
                const double dPos = attrs.value(QLatin1String("position")).toDouble(&bOk);
                if (strGradientKey.isEmpty() || !color.isValid() || !bOk || dPos < 0.0 || dPos > 1.0)
                    return false;
                gradient.stops.append(qMakePair(dPos, color));
            } else if (name == QLatin1String("Style")) {
                const QString strSelector = attrs.value(QLatin1String("selector")).toString();
                const QString strText = xml.readElementText();
                if (strSelector.isEmpty() || xml.hasError())
                    return false;
                mapStyle.insert(strSelector, strText.trimmed());
            }
        } else if (xml.isEndElement() && xml.name() == QLatin1String("Gradient")) {
            if (gradient.stops.isEmpty())
                return false;
            gradient.color = gradient.stops.first().second;
            mapColor.insert(strGradientKey, gradient);
            strGradientKey.clear();
        }
    }
    return !xml.hasError();
}

// The installed family that stands in for a missing one. Preference goes to
// families that cover Chinese, so both languages render with one font.
QStringList substituteFamilies()
{
    static const QStringList listPreferred = {
        QStringLiteral("WenQuanYi Micro Hei"), QStringLiteral("Noto Sans CJK SC"),
        QStringLiteral("Source Han Sans SC"), QStringLiteral("WenQuanYi Zen Hei"),
        QStringLiteral("Droid Sans Fallback"), QStringLiteral("Microsoft YaHei"),
        QStringLiteral("DejaVu Sans"), QStringLiteral("Liberation Sans")};
    const QStringList listInstalled = QFontDatabase().families();
    QStringList listResult;
    for (const QString &strFamily : listPreferred) {
        if (listInstalled.contains(strFamily, Qt::CaseInsensitive))
            listResult.append(strFamily);
    }
    return listResult;
}

void applyApplicationFont()
{
    if (!qobject_cast<QApplication *>(QCoreApplication::instance()))
        return;
    const QString strFamily = Custom::globalFontFamily();
    if (strFamily.isEmpty())
        return;
    QFont font = QApplication::font();
    if (font.family() == strFamily)
        return;
    font.setFamily(strFamily);
    QApplication::setFont(font);
}

} // namespace

namespace Custom {

int language()
{
    return state().nLanguage;
}

void setLanguage(int nLanguage)
{
    state().nLanguage = nLanguage == Chinese ? Chinese : English;
    applyApplicationFont();
}

bool addXmlPath(const QString &strPath)
{
    QHash<QString, ColorEntry> mapColor;
    QHash<QString, QString> mapStyle;
    if (!parseXml(strPath, mapColor, mapStyle))
        return false;
    KitState &s = state();
    for (auto it = mapColor.constBegin(); it != mapColor.constEnd(); ++it)
        s.mapColor.insert(it.key(), it.value());
    for (auto it = mapStyle.constBegin(); it != mapStyle.constEnd(); ++it)
        s.mapStyle.insert(it.key(), it.value());
    s.listXmlPath.append(strPath);
    return true;
}

QStringList xmlPaths()
{
    return state().listXmlPath;
}

void setGlobalFontFamily(Language eLanguage, const QString &strFamily)
{
    if (strFamily.isEmpty())
        return;
    if (QCoreApplication::instance() && qobject_cast<QGuiApplication *>(QCoreApplication::instance())
        && !QFontDatabase().families().contains(strFamily, Qt::CaseInsensitive)
        && QFont::substitutes(strFamily).isEmpty()) {
        QFont::insertSubstitutions(strFamily, substituteFamilies());
    }
    state().mapFontFamily.insert(eLanguage == Chinese ? Chinese : English, strFamily);
    applyApplicationFont();
}

void setGlobalFontFamily(int nLanguage, const QString &strFamily)
{
    setGlobalFontFamily(nLanguage == Chinese ? Chinese : English, strFamily);
}

QString globalFontFamily(int nLanguage)
{
    const KitState &s = state();
    const int nKey = nLanguage < 0 ? s.nLanguage : (nLanguage == Chinese ? Chinese : English);
    if (s.mapFontFamily.contains(nKey))
        return s.mapFontFamily.value(nKey);
    if (!s.mapFontFamily.isEmpty())
        return s.mapFontFamily.first();
    return QCoreApplication::instance() && qobject_cast<QGuiApplication *>(QCoreApplication::instance())
        ? QGuiApplication::font().family()
        : QString();
}

QBrush getDataBaseColor(const QString &strKey, const QRect &rect)
{
    const ColorEntry *pEntry = findColor(strKey);
    if (!pEntry)
        return QBrush(Qt::NoBrush);
    if (!pEntry->bGradient)
        return QBrush(pEntry->color);
    const QRectF r(rect.isValid() ? QRectF(rect) : QRectF(0, 0, 1, 1));
    QLinearGradient gradient(r.left() + pEntry->ptStart.x() * r.width(), r.top() + pEntry->ptStart.y() * r.height(),
                             r.left() + pEntry->ptEnd.x() * r.width(), r.top() + pEntry->ptEnd.y() * r.height());
    gradient.setStops(pEntry->stops);
    return QBrush(gradient);
}

bool hasDataBaseColor(const QString &strKey)
{
    return findColor(strKey) != nullptr;
}

QString styleSheetBrush(const QString &strKey)
{
    const ColorEntry *pEntry = findColor(strKey);
    if (!pEntry)
        return QString();
    auto css = [](const QColor &c) {
        return QStringLiteral("rgba(%1, %2, %3, %4)").arg(c.red()).arg(c.green()).arg(c.blue()).arg(c.alpha());
    };
    if (!pEntry->bGradient)
        return css(pEntry->color);
    QString strText = QStringLiteral("qlineargradient(x1:%1, y1:%2, x2:%3, y2:%4")
                          .arg(pEntry->ptStart.x()).arg(pEntry->ptStart.y())
                          .arg(pEntry->ptEnd.x()).arg(pEntry->ptEnd.y());
    for (const QGradientStop &stop : pEntry->stops)
        strText += QStringLiteral(", stop:%1 %2").arg(stop.first).arg(css(stop.second));
    return strText + QLatin1Char(')');
}

QString styleSheetForSelector(const QString &strSelector)
{
    return state().mapStyle.value(strSelector);
}

QColor resolveColor(const QString &strColorOrKey)
{
    if (const ColorEntry *pEntry = findColor(strColorOrKey))
        return pEntry->color;
    return parseColor(strColorOrKey);
}

QString composeSavePath(const QString &strDir, const QString &strFileName, const QString &strSuffix)
{
    QString strName = strFileName.trimmed();
    const QString strDot = strSuffix.startsWith(QLatin1Char('.')) ? strSuffix : QLatin1Char('.') + strSuffix;
    if (!strSuffix.isEmpty() && !strName.isEmpty() && !strName.endsWith(strDot, Qt::CaseInsensitive))
        strName += strDot;
    if (strDir.isEmpty())
        return strName;
    if (strName.isEmpty())
        return QDir::cleanPath(strDir);
    return QDir::cleanPath(strDir + QLatin1Char('/') + strName);
}

QString composeSaveFilter(const QString &strFilter, const QString &strSuffix)
{
    if (!strFilter.trimmed().isEmpty())
        return strFilter;
    QString strBare = strSuffix;
    if (strBare.startsWith(QLatin1Char('.')))
        strBare.remove(0, 1);
    return strBare.isEmpty() ? QStringLiteral("*") : QStringLiteral("*.") + strBare;
}

QString getSaveFileName(QWidget *pParent, const QString &strCaption, const QString &strDir,
                        const QString &strFileName, const QString &strSuffix, const QString &strFilter)
{
    QFileDialog dialog(pParent, strCaption, composeSavePath(strDir, strFileName, strSuffix),
                       composeSaveFilter(strFilter, strSuffix));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    QString strBare = strSuffix;
    if (strBare.startsWith(QLatin1Char('.')))
        strBare.remove(0, 1);
    dialog.setDefaultSuffix(strBare);
    if (dialog.exec() != QDialog::Accepted)
        return QString();
    const QStringList listFiles = dialog.selectedFiles();
    if (listFiles.isEmpty() || listFiles.first().isEmpty())
        return QString();
    QString strPath = QFileInfo(listFiles.first()).absoluteFilePath();
    // Native dialogs do not all honour the default suffix.
    if (!strBare.isEmpty() && QFileInfo(strPath).suffix().isEmpty())
        strPath += QLatin1Char('.') + strBare;
    return strPath;
}

QPixmap loadPixmap(const QString &strPath, qreal dDevicePixelRatio)
{
    if (dDevicePixelRatio > 1.0) {
        const int nDot = strPath.lastIndexOf(QLatin1Char('.'));
        const QString str2x = nDot > 0 ? strPath.left(nDot) + QStringLiteral("@2x") + strPath.mid(nDot) : QString();
        if (!str2x.isEmpty() && QFile::exists(str2x)) {
            QPixmap pixmap(str2x);
            if (!pixmap.isNull()) {
                pixmap.setDevicePixelRatio(2.0);
                return pixmap;
            }
        }
    }
    return QPixmap(strPath);
}

} // namespace Custom
