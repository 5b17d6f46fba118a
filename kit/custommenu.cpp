#include "custommenu.h"

#include "kitstyle.h"

CustomMenu::CustomMenu(QWidget *pParent)
    : QMenu(pParent)
    , CustomObject(this)
{
    cUpdateStyle();
}

CustomMenu::CustomMenu(const QString &strTitle, QWidget *pParent)
    : CustomMenu(pParent)
{
    setTitle(strTitle);
}

QString CustomMenu::cDefaultStyleSheet() const
{
    return QStringLiteral(
               "QMenu { background-color: %1; border: 1px solid %2; padding: 4px 0; }"
               "QMenu::item { color: %3; padding: 7px 28px 7px 28px; background: transparent; }"
               "QMenu::item:selected { background-color: %4; color: %5; }"
               "QMenu::item:disabled { color: %6; }"
               "QMenu::separator { height: 1px; background: %7; margin: 4px 10px; }"
               "QMenu::indicator { width: 14px; height: 14px; left: 8px; }")
        .arg(KitStyle::window(), KitStyle::border(), KitStyle::text(), KitStyle::accentLight(),
             KitStyle::accent(), KitStyle::textDisabled(), KitStyle::divider());
}
