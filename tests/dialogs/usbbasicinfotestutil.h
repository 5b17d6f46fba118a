#pragma once

// Shared by the USB tree viewer's tests: the probe library, the table's rows
// as label/value lines, and finding and listing the tree's items.
#include <QFile>
#include <QPair>
#include <QString>
#include <QStringList>
#include <QTableWidget>
#include <QTreeWidget>
#include <QVector>

namespace UsbBasicInfoTest {

inline const QString kLibrary = QStringLiteral(VX_BIN_DIR "/probekit");
inline const QString kBreak = QStringLiteral("\r\n");

using Lines = QVector<QPair<QString, QString>>;

// True when the build made the probe library, which the captured trees are read with.
inline bool probeLibraryBuilt()
{
    return QFile::exists(VX_BIN_DIR "/libprobekit.so") || QFile::exists(VX_BIN_DIR "/Probekit.dll");
}

// The tree's item texts in tree order.
inline void collectNames(QTreeWidgetItem *pItem, QStringList &listNames)
{
    for (int i = 0; i < pItem->childCount(); ++i) {
        listNames << pItem->child(i)->text(0);
        collectNames(pItem->child(i), listNames);
    }
}

QTreeWidgetItem *findItem(QTreeWidget *pTree, const QString &strName)
{
    const QList<QTreeWidgetItem *> listFound = pTree->findItems(strName, Qt::MatchExactly | Qt::MatchRecursive);
    return listFound.value(0);
}

// The table's rows as the decoder wrote them (the inserted breaks removed).
inline Lines tableLines(const QTableWidget *pTable)
{
    Lines lines;
    for (int nRow = 0; nRow < pTable->rowCount(); ++nRow) {
        const QTableWidgetItem *pLabel = pTable->item(nRow, 0);
        const QTableWidgetItem *pValue = pTable->item(nRow, 1);
        lines.append(qMakePair(pLabel ? pLabel->text().remove(kBreak) : QStringLiteral("<none>"),
            pValue ? pValue->text().remove(kBreak) : QStringLiteral("<none>")));
    }
    return lines;
}

} // namespace UsbBasicInfoTest
