#pragma once

#include "cdetectinfo.h"
#include "vxchange.h"
#include "vxitemid.h"
#include "vxrepair.h"

#include <QLoggingCategory>
#include <QMap>
#include <QStringList>

#include <functional>
#include <type_traits>

struct UsbRootItem;

Q_DECLARE_LOGGING_CATEGORY(lcVxProbes)

// The probes of one item. An empty entry means the item has no such probe on
// this platform.
struct VxItemProbes
{
    // Fills the record and sets bNormal.
    std::function<void(CDetectInfo &)> check;
    // Changes the machine; the outcome says whether the privileged part
    // happened and why not.
    std::function<VxRepairOutcome(CDetectInfo &)> repair;
    // Starts the item's installer without waiting for it: Done when it was
    // found and started, NotFound when there is none.
    std::function<VxRepairOutcome()> install;
    // Where the installer is looked for, so that a missing one can be named.
    std::function<QString()> installerPath;
    // What the repair would change, worked out from the record without
    // changing anything; empty where the repair cannot say beforehand.
    std::function<VxPlan(const CDetectInfo &)> plan;
};

namespace VxProbeAdapt {
template<typename F>
struct Signature : Signature<decltype(&F::operator())>
{
};
template<typename C, typename R, typename A>
struct Signature<R (C::*)(A &) const>
{
    using Result = R;
    using Record = A;
};
template<typename C, typename R, typename A>
struct Signature<R (C::*)(A &)>
{
    using Result = R;
    using Record = A;
};
template<typename R, typename A>
struct Signature<R (*)(A &)>
{
    using Result = R;
    using Record = A;
};
template<typename R, typename A>
struct Signature<R (&)(A &)> : Signature<R (*)(A &)>
{
};
template<typename R, typename A>
struct Signature<R(A &)> : Signature<R (*)(A &)>
{
};

// The record as the probe's own class; null (and a warning) for a record of
// another class, which only a mistaken table can hand in.
template<typename Record>
Record *as(CDetectInfo &info)
{
    auto *pRecord = dynamic_cast<Record *>(&info);
    if (!pRecord)
        qCWarning(lcVxProbes) << "probe of item" << info.nItem << "got a record of another class";
    return pRecord;
}
} // namespace VxProbeAdapt

// A check written for its record class, as a table entry.
template<typename F>
std::function<void(CDetectInfo &)> vxCheck(F fn)
{
    using Record = std::remove_cv_t<typename VxProbeAdapt::Signature<std::decay_t<F>>::Record>;
    return [fn](CDetectInfo &info) {
        if (Record *pRecord = VxProbeAdapt::as<Record>(info))
            fn(*pRecord);
    };
}

// A repair written for its record class, as a table entry. A repair that
// returns nothing has no privileged step that could fail.
template<typename F>
std::function<VxRepairOutcome(CDetectInfo &)> vxRepair(F fn)
{
    using Sig = VxProbeAdapt::Signature<std::decay_t<F>>;
    using Record = std::remove_cv_t<typename Sig::Record>;
    return [fn](CDetectInfo &info) -> VxRepairOutcome {
        Record *pRecord = VxProbeAdapt::as<Record>(info);
        if (!pRecord)
            return VxRepairOutcome::failed(QStringLiteral("record of another class"));
        if constexpr (std::is_void_v<typename Sig::Result>) {
            fn(*pRecord);
            return VxRepairOutcome();
        } else if constexpr (std::is_same_v<typename Sig::Result, VxRepairStatus>) {
            return VxRepairOutcome(fn(*pRecord));
        } else {
            return fn(*pRecord);
        }
    };
}

// A plan written for its record class, as a table entry; a record of
// another class plans nothing.
template<typename F>
std::function<VxPlan(const CDetectInfo &)> vxPlan(F fn)
{
    using Record = std::remove_cv_t<typename VxProbeAdapt::Signature<std::decay_t<F>>::Record>;
    return [fn](const CDetectInfo &info) -> VxPlan {
        if (const Record *pRecord = VxProbeAdapt::as<Record>(const_cast<CDetectInfo &>(info)))
            return fn(*pRecord);
        return VxPlan();
    };
}

// An installer start as a table entry; one that answers a bool says only
// whether it found and started the installer.
template<typename F>
std::function<VxRepairOutcome()> vxInstall(F fn)
{
    return [fn]() -> VxRepairOutcome {
        if constexpr (std::is_same_v<std::invoke_result_t<F>, bool>)
            return fn() ? VxRepairOutcome() : VxRepairOutcome(VxRepairStatus::NotFound);
        else
            return fn();
    };
}

// The checks and repairs the operate thread calls, by item. Tests build
// tables of fakes and hand them to the thread, the page or the dialogs.
struct VxProbeTable
{
    QMap<quint32, VxItemProbes> items;

    // Frees a USB tree built by a probe (the tree lives in the probe
    // library, which alone can free it); null is fine.
    std::function<void(UsbRootItem *)> usbTreeDestroy;

    // Items that have a probe here but cannot read the system being
    // diagnosed (another system root without their source): not run, and
    // reported "not available" for that reason.
    quint32 uUnreadable = 0;

    VxItemProbes &operator[](quint32 nItem) { return items[nItem]; }
    VxItemProbes probes(quint32 nItem) const { return items.value(nItem); }

    // Null clears an entry (the item then has no such probe).
    void setCheck(quint32 nItem, std::nullptr_t) { items[nItem].check = nullptr; }
    void setRepair(quint32 nItem, std::nullptr_t) { items[nItem].repair = nullptr; }
    void setInstall(quint32 nItem, std::nullptr_t) { items[nItem].install = nullptr; }
    void setPlan(quint32 nItem, std::nullptr_t) { items[nItem].plan = nullptr; }
    template<typename F>
    void setCheck(quint32 nItem, F fn)
    {
        items[nItem].check = vxCheck(std::move(fn));
    }
    template<typename F>
    void setRepair(quint32 nItem, F fn)
    {
        items[nItem].repair = vxRepair(std::move(fn));
    }
    template<typename F>
    void setInstall(quint32 nItem, F fn)
    {
        items[nItem].install = vxInstall(std::move(fn));
    }
    template<typename F>
    void setPlan(quint32 nItem, F fn)
    {
        items[nItem].plan = vxPlan(std::move(fn));
    }

    bool isUnreadable(int nItem) const { return (uUnreadable & quint32(nItem)) != 0; }
    // Whether a detection / optimisation pass can run the item here: its row
    // asks for probes this table has, and the item can read the system.
    bool canDetect(int nItem) const;
    bool canOptimize(int nItem) const;
};

// The real probes of this platform, from the item rows; repairs get their
// rights from rights.
VxProbeTable defaultProbeTable(const VxPrivileges &rights = VxPrivileges::system());
