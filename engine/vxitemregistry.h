#pragma once

#include "vxitemid.h"
#include "vxprobetable.h"

#include <QJsonObject>
#include <QStringList>
#include <QVector>

#include <new>
#include <type_traits>

class CDetectInfo;

// What a row's own detection step can reach in the running pass.
class VxDetectPass
{
public:
    virtual ~VxDetectPass();
    // The record of another item (created when absent).
    virtual CDetectInfo *record(quint32 nItem) = 0;
    // Runs the item's check entry on the record.
    virtual void check(CDetectInfo &info) = 0;
    // Frees the USB tree a record holds (other records hold none).
    virtual void destroyTree(CDetectInfo *pInfo) = 0;

    // An item whose result an earlier item of the pass already produced.
    void markHandedOver(quint32 nItem) { m_uHandedOver |= nItem; }
    bool handedOver(quint32 nItem) const { return (m_uHandedOver & nItem) != 0; }

private:
    quint32 m_uHandedOver = 0;
};

// Everything the program knows about one diagnosis item, in one row: the
// operate thread, the result texts, the result tree, the report and the
// tests all read the rows, and nothing else switches on item ids.
//
// Adding an item means adding a row (engine/items/), its record and its
// probe; see engine/README.md.

// The row button: its text and whether it can be clicked, for a normal and
// for an exceptional outcome.
struct VxButtonRule
{
    VxItems::ButtonText normalText = VxItems::BtnNormal;
    bool bEnabledWhenNormal = false;
    VxItems::ButtonText exceptionText = VxItems::BtnNormal;
    bool bEnabledWhenExceptional = true;
};

// What clicking the row button does.
enum class VxRowAction {
    None,         // the button only states the outcome
    Dialog,       // opens the item's dialog (a viewer)
    RepairDialog, // opens the item's dialog, which may repair; the row is
                  // refreshed and a repaired item leaves the optimisation
    Install,      // runs the item's installer and polls its check
};

// How an optimisation pass repairs the item.
enum class VxRepairKind {
    None,
    Repair,  // the repair entry, then the recheck rule
    Install, // the install entry, then the check is polled until it passes
};

// When the optimisation checks the item again after its repair.
enum class VxRecheck {
    Never,           // the repair leaves the record up to date
    Always,          // the repair only writes; a check reads the result
    AfterFailedStep, // the repair marks the item normal; a failed privileged
                     // step must show, so a check looks again
};

struct VxItemRow
{
    VxItemRow(VxItems::ItemId nId, const char *pSourceName, VxItems::Group nGroup)
        : id(nId)
        , pName(pSourceName)
        , group(nGroup)
    {
    }

    VxItems::ItemId id;
    const char *pName;                // untranslated, context "VxOneKeyResult"
    VxItems::Group group;
    int nDetectRank = 0;              // order in a detection pass; 0: never run
    int nDisplayRank = 0;             // order among the group's rows; 0: no row
    int nOptimizeRank = 0;            // order in an optimisation pass; 0: never
    VxButtonRule button;
    VxRowAction action = VxRowAction::None;
    VxRepairKind repair = VxRepairKind::None;
    VxRecheck recheck = VxRecheck::Never;
    VxItems::Severity exceptionSeverity = VxItems::SeverityMedium;
    bool bLinesInTree = true;         // false: the lines only go to the log
    const char *pInstallLabel = nullptr; // loading text of an install (context "VxOneKeyResultTree")

    CDetectInfo *(*create)() = nullptr;              // a new, normal record of the item's class
    bool (*fits)(const CDetectInfo &) = nullptr;     // whether a record is of the item's class
    // This platform's probes (entries may be empty); repairs use rights.
    VxItemProbes (*defaultProbes)(const VxPrivileges &rights) = nullptr;
    QStringList (*lines)(const CDetectInfo &) = nullptr; // the text lines under the row and in the log
    QJsonObject (*facts)(const CDetectInfo &) = nullptr; // the report's facts
    // Replaces the plain "call the check" of a detection pass (items that
    // share work with another item); null for most items.
    void (*detect)(VxDetectPass &, CDetectInfo &) = nullptr;
};

namespace VxItemRegistry {

// Every row, ordered by id.
const QVector<VxItemRow> &rows();
// The row of an id, or null.
const VxItemRow *row(quint32 nItem);

// Ids of the rows in a detection, display (per group) and optimisation order.
QVector<int> detectOrder();
QVector<int> displayOrder(int nGroup);
QVector<int> optimizeOrder();
// Groups that have rows, in display order.
QVector<int> groups();
// The items shown as rows of a group, as a mask; all shown rows.
quint32 groupMask(int nGroup);
quint32 shownMask();

// What a row lacks for its button rule and repair kind, one line per gap
// (empty when complete). A row whose button can be clicked needs an
// action; a repair needs its probes; every row needs a record factory and
// lines.
QStringList rowGaps(const VxItemRow &row, const VxItemProbes &probes);

} // namespace VxItemRegistry

// A typed record factory and class test for a row.
template<typename Record>
CDetectInfo *vxNewRecord()
{
    return new (std::nothrow) Record;
}
template<typename Record>
bool vxRecordFits(const CDetectInfo &info)
{
    if constexpr (std::is_same_v<Record, CDetectInfo>) {
        (void)info;
        return true;
    } else {
        return dynamic_cast<const Record *>(&info) != nullptr;
    }
}
