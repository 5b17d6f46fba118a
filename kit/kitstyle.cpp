#include "kitstyle.h"

#include "custom.h"

namespace KitStyle {

QColor color(const char *pKey, const char *pDefault)
{
    const QColor fromDatabase = Custom::resolveColor(QString::fromLatin1(pKey));
    return fromDatabase.isValid() ? fromDatabase : QColor(QString::fromLatin1(pDefault));
}

QString css(const char *pKey, const char *pDefault)
{
    const QColor c = color(pKey, pDefault);
    return c.alpha() == 255 ? c.name() : QStringLiteral("rgba(%1, %2, %3, %4)")
        .arg(c.red()).arg(c.green()).arg(c.blue()).arg(c.alpha());
}

} // namespace KitStyle
