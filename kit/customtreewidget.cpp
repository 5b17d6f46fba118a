#include "customtreewidget.h"

#include "kitstyle.h"

#include <QHeaderView>

CustomTreeWidget::CustomTreeWidget(QWidget *pParent)
    : QTreeWidget(pParent)
    , CustomObject(this)
{
    setFrameShape(QFrame::NoFrame);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    header()->setHighlightSections(false);
    header()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    cUpdateStyle();
}

QString CustomTreeWidget::cDefaultStyleSheet() const
{
    return QStringLiteral(
               "QTreeWidget { background-color: %1; color: %2; border: 1px solid %3; outline: none; }"
               "QTreeWidget::item { min-height: 26px; }"
               "QTreeWidget::item:hover { background-color: %4; }"
               "QTreeWidget::item:selected { background-color: %5; color: %6; }"
               "QHeaderView::section { background-color: %7; color: %8; border: none; "
               "border-bottom: 1px solid %3; padding-left: 8px; font-weight: 600; }")
        .arg(KitStyle::window(), KitStyle::text(), KitStyle::border(), KitStyle::hover(), KitStyle::accentLight(),
             KitStyle::accent(), KitStyle::header(), KitStyle::textSecondary());
}
