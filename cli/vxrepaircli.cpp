#include "vxrepaircli.h"

#include "vxitems.h"
#include "vxprobetable.h"

#include <QCoreApplication>

namespace {

} // namespace

// The items whose repairs make planned changes here: the rows with a plan
// entry, in optimisation order.
const QList<quint32> &VxRepairCli::repairableItems()
{
    static const QList<quint32> listItems = [] {
        QList<quint32> list;
        const VxProbeTable table = defaultProbeTable();
        for (int nItem : VxItems::optimizeOrder()) {
            if (table.probes(quint32(nItem)).plan)
                list << quint32(nItem);
        }
        return list;
    }();
    return listItems;
}

QStringList VxRepairCli::takeOptions(const QStringList &listArgs)
{
    QStringList listRest;
    bool bOptionsEnded = false;
    for (int i = 0; i < listArgs.size(); ++i) {
        const QString &strArg = listArgs.at(i);
        if (i == 0 || bOptionsEnded) {
            listRest << strArg;
            continue;
        }
        if (strArg == QLatin1String("--")) {
            bOptionsEnded = true;
            listRest << strArg;
        } else if (strArg == QLatin1String("--repair")) {
            m_bRepair = true;
        } else if (strArg.startsWith(QLatin1String("--repair="))) {
            m_bRepair = true;
            m_strRepairIds = strArg.mid(9);
            if (m_strRepairIds.isEmpty())
                m_strError = QCoreApplication::translate("VxCheck", "--repair= needs item ids, e.g. --repair=1,2.");
        } else if (strArg == QLatin1String("--dry-run")) {
            m_bDryRun = true;
        } else if (strArg == QLatin1String("--undo")) {
            m_bUndo = true;
        } else if (strArg.startsWith(QLatin1String("--undo="))) {
            m_bUndo = true;
            m_strUndo = strArg.mid(7);
            if (m_strUndo.isEmpty())
                m_strError = QCoreApplication::translate(
                    "VxCheck", "--undo= needs a number or an optimisation id from --journal.");
        } else if (strArg == QLatin1String("--journal")) {
            m_bJournal = true;
        } else {
            listRest << strArg;
        }
    }
    return listRest;
}

QList<QCommandLineOption> VxRepairCli::helpOptions()
{
    return {
        QCommandLineOption(QStringLiteral("repair"),
            QCoreApplication::translate("VxCheck",
                "Repair the exceptional items that have a planned repair, or only those given "
                "as --repair=IDS. Every change is journaled and can be undone.")),
        QCommandLineOption(QStringLiteral("dry-run"),
            QCoreApplication::translate("VxCheck",
                "With --repair or --undo: show the planned changes (old and new value) and change "
                "nothing.")),
        QCommandLineOption(QStringLiteral("undo"),
            QCoreApplication::translate("VxCheck",
                "Undo the last optimisation, or the one given as --undo=N (its number or id in "
                "--journal).")),
        QCommandLineOption(QStringLiteral("journal"),
            QCoreApplication::translate("VxCheck", "List the journaled optimisations and their changes.")),
    };
}

QString VxRepairCli::usageError() const
{
    if (!m_strError.isEmpty())
        return m_strError;
    if (m_bRepair && m_bUndo)
        return QCoreApplication::translate("VxCheck", "--repair and --undo cannot be combined.");
    if (m_bJournal && (m_bRepair || m_bUndo || m_bDryRun))
        return QCoreApplication::translate(
            "VxCheck", "--journal cannot be combined with --repair, --undo or --dry-run.");
    if (m_bDryRun && !m_bRepair && !m_bUndo)
        return QCoreApplication::translate("VxCheck", "--dry-run needs --repair or --undo.");
    if (!m_strRepairIds.isEmpty()) {
        QStringList listKnown;
        for (quint32 uItem : repairableItems())
            listKnown << QString::number(uItem);
        for (const QString &strId : m_strRepairIds.split(QLatin1Char(','))) {
            if (!listKnown.contains(strId.trimmed()))
                return QCoreApplication::translate("VxCheck", "Item \"%1\" has no repair here: use %2.")
                    .arg(strId, listKnown.join(QLatin1Char(',')));
        }
    }
    return QString();
}
