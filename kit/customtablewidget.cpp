#include "customtablewidget.h"

#include "kitstyle.h"

#include <QHeaderView>

CustomTableWidget::CustomTableWidget(QWidget *pParent)
    : QTableWidget(pParent)
    , CustomObject(this)
{
    verticalHeader()->hide();
    verticalHeader()->setDefaultSectionSize(34);
    horizontalHeader()->setHighlightSections(false);
    horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    setShowGrid(false);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setFrameShape(QFrame::NoFrame);
    cUpdateStyle();
}

CustomTableWidget::CustomTableWidget(int nRows, int nColumns, QWidget *pParent)
    : CustomTableWidget(pParent)
{
    setRowCount(nRows);
    setColumnCount(nColumns);
}

QString CustomTableWidget::cDefaultStyleSheet() const
{
    return QStringLiteral(
               "QTableWidget { background-color: %1; color: %2; border: 1px solid %3; "
               "selection-background-color: %4; selection-color: %2; outline: none; }"
               "QTableWidget::item { border-bottom: 1px solid %5; padding-left: 8px; }"
               "QTableWidget::item:selected { background-color: %4; color: %2; }"
               "QHeaderView::section { background-color: %6; color: %7; border: none; "
               "border-bottom: 1px solid %3; padding-left: 8px; font-weight: 600; }"
               "QTableCornerButton::section { background-color: %6; border: none; }")
        .arg(KitStyle::window(), KitStyle::text(), KitStyle::border(), KitStyle::accentLight(), KitStyle::divider(),
             KitStyle::header(), KitStyle::textSecondary());
}
