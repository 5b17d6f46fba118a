#pragma once

#include "cdetectinfo.h"
#include "netadapters.h"
#include "vxchange.h"
#include "vxrepair.h"

#include <QJsonObject>
#include <QMap>
#include <QStringList>

// Item 16384 "reverse-path filter" (Linux): strict reverse-path filtering
// (rp_filter 1) on an adapter that may carry cameras drops the replies of a
// camera on another subnet (device discovery, a camera whose address is not
// yet configured). The kernel uses the larger of net.ipv4.conf.all.rp_filter
// and the adapter's own value; 0 (off) and 2 (loose) are fine.
class CRpFilterDetectInfo : public CDetectInfo
{
public:
    CRpFilterDetectInfo() { nItem = 16384; }
    ~CRpFilterDetectInfo() override;

    bool bApplicable = true; // false where the system has no such filter (Windows)
    int nAll = -1; // net.ipv4.conf.all.rp_filter; -1 cannot be read
    QMap<QString, int> adapters; // physical adapter -> its own rp_filter (-1 cannot be read)
};

namespace RpFilter {

constexpr quint32 kItemId = 16384;
constexpr int kStrict = 1;
constexpr int kLoose = 2;

// The value the kernel applies to an adapter: max(all, own); -1 when
// neither can be read.
int effective(int nAll, int nOwn);

// Reads "all" and the value of each physical adapter of links (Windows:
// not applicable, links unused).
void check(CRpFilterDetectInfo &info, const NetAdapters::LinkSource &links = NetAdapters::LinkSource::system());
bool isExceptional(const CRpFilterDetectInfo &info);

// For each adapter filtered strictly, its own rp_filter to 2 (loose), which
// wins over "all" whatever that holds; other adapters are left alone.
VxPlan plan(const CRpFilterDetectInfo &info);

// As root: applies the plan (TuningApply::applyPlan, its interfaces checked
// against links) and checks again.
VxRepairOutcome repair(CRpFilterDetectInfo &info, const VxPrivileges &rights,
    const NetAdapters::LinkSource &links = NetAdapters::LinkSource::system());

} // namespace RpFilter

QStringList rpFilterLines(const CRpFilterDetectInfo &info);
QJsonObject rpFilterFacts(const CRpFilterDetectInfo &info);
