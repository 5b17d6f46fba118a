#include "usbbuffers.h"

#include <QUuid>

#include <windows.h>
// powrprof.h needs the types of windows.h.
#include <powrprof.h>

namespace UsbBuffers {

namespace {

// The power plan's "USB settings" subgroup and its "USB selective suspend
// setting" (index 0 disabled, 1 enabled).
const GUID kUsbSubgroup = {0x2a737441, 0x1930, 0x4402, {0x8d, 0x77, 0xb2, 0xbe, 0xbb, 0xa3, 0x08, 0xa3}};
const GUID kSelectiveSuspend = {0x48e6b7a6, 0x50f5, 0x4782, {0xa5, 0xd4, 0x53, 0xbb, 0x8f, 0x07, 0xe2, 0x26}};

// The active plan's GUID (false when there is none).
bool activeScheme(GUID *pScheme)
{
    GUID *pActive = nullptr;
    if (PowerGetActiveScheme(nullptr, &pActive) != ERROR_SUCCESS || !pActive)
        return false;
    *pScheme = *pActive;
    LocalFree(pActive);
    return true;
}

QString schemeName(const GUID &scheme)
{
    DWORD dwSize = 0;
    if (PowerReadFriendlyName(nullptr, &scheme, nullptr, nullptr, nullptr, &dwSize) != ERROR_SUCCESS || dwSize < 2
        || dwSize > 4096)
        return QString();
    QByteArray buffer(int(dwSize) + 2, '\0');
    if (PowerReadFriendlyName(nullptr, &scheme, nullptr, nullptr, reinterpret_cast<UCHAR *>(buffer.data()), &dwSize)
        != ERROR_SUCCESS)
        return QString();
    return QString::fromWCharArray(reinterpret_cast<const wchar_t *>(buffer.constData()));
}

} // namespace

void check(CUsbBufferDetectInfo &info)
{
    info.bPowerPlan = true;
    info.nSelectiveSuspend = -1;
    info.strPowerScheme.clear();
    info.strPowerSchemeName.clear();
    GUID scheme = {};
    if (activeScheme(&scheme)) {
        info.strPowerScheme = QUuid(scheme).toString();
        info.strPowerSchemeName = schemeName(scheme);
        DWORD dwIndex = 0;
        if (PowerReadACValueIndex(nullptr, &scheme, &kUsbSubgroup, &kSelectiveSuspend, &dwIndex) == ERROR_SUCCESS)
            info.nSelectiveSuspend = dwIndex != 0 ? 1 : 0;
    }
    info.bNormal = isExceptional(info) ? 0 : 1;
}

VxRepairOutcome repair(CUsbBufferDetectInfo &info, const VxPrivileges &)
{
    VxRepairStatus status = VxRepairStatus::Done;
    for (const VxChange &change : plan(info)) {
        const QUuid uuid(change.strTarget);
        const GUID scheme = uuid;
        if (uuid.isNull()
            || PowerWriteACValueIndex(nullptr, &scheme, &kUsbSubgroup, &kSelectiveSuspend, 0) != ERROR_SUCCESS
            || PowerWriteDCValueIndex(nullptr, &scheme, &kUsbSubgroup, &kSelectiveSuspend, 0) != ERROR_SUCCESS) {
            status = VxRepairStatus::Failed;
            continue;
        }
        // Writing the index changes the stored plan; setting it active again
        // applies it now.
        PowerSetActiveScheme(nullptr, &scheme);
        qCInfo(lcVxRepair).noquote() << "USB selective suspend of power plan" << change.strTarget << "old: 1 new: 0";
    }
    check(info);
    return VxRepairOutcome(status);
}

} // namespace UsbBuffers
