#pragma once

#include <QMap>
#include <QString>

#include "vxrepair.h"

class CDetectInfo;
class QWidget;

// Runs one detection or one repair of selected items on a fresh
// VxOperateThread and blocks the caller until it ends, keeping the GUI alive
// (the event loop is pumped while the thread runs). A modal loading box with
// loadingText is shown meanwhile; an empty text shows no box. Call run() on
// the GUI thread.
//
//   VxOperateRunner runner(false, 256, this, tr("Enabling jumbo frame..."), {{256, pInfo}});
//   runner.run();   // pInfo now holds the repaired state
//
// Repair (bIsDetecting false): itemType is the optimization mask.
// Detection (bIsDetecting true): itemType is the detection mask.
// In both, the records in items are worked on in place and stay the
// caller's (their nItem is set to their key); a record whose class does not
// belong to its key is left out and that item is not run. Records the thread
// had to create for ids missing from items are added to items() and then
// belong to the caller.
// The thread calls the probes of VxDialogProbes::table(); the items must not
// be touched by anything else until run() returns.
class VxOperateRunner
{
public:
    VxOperateRunner() = default;
    VxOperateRunner(bool bIsDetecting, int nItemType, QWidget *pParent, const QString &strLoadingText,
                    const QMap<int, CDetectInfo *> &mapItems);

    void run();

    // Whether a record may stand for item nId (its class is the item's).
    static bool recordFits(int nId, const CDetectInfo *pInfo);

    // After run(): the records of the pass (see above).
    const QMap<int, CDetectInfo *> &items() const { return mapItems; }
    // After a repair run: how the repair of an item ended (Done when it
    // made its change or did not run).
    VxRepairOutcome outcome(int nItem) const { return mapOutcomes.value(nItem); }

    bool bIsDetecting = true;
    int nItemType = 0;
    QWidget *pParent = nullptr;
    QString strLoadingText;
    QMap<int, CDetectInfo *> mapItems;
    QMap<int, VxRepairOutcome> mapOutcomes;
};
