#include "cdetectinfo.h"

#include "vxitems.h"

#include <new>

CDetectInfo::~CDetectInfo() = default;
CSDKPathDetectInfo::~CSDKPathDetectInfo() = default;
CEnvDetectInfo::~CEnvDetectInfo() = default;
CUSBControllerDriverInfo::~CUSBControllerDriverInfo() = default;
CSystemDetectInfo::~CSystemDetectInfo() = default;
CJumboPacketDetectInfo::~CJumboPacketDetectInfo() = default;
CNetworkSpeedDetectInfo::~CNetworkSpeedDetectInfo() = default;
CUsbBasicDetectInfo::~CUsbBasicDetectInfo() = default;

namespace {
CDetectInfo *newRecordFor(int nItem)
{
    switch (nItem) {
    case VxItems::SdkFiles:
        return new (std::nothrow) CSDKPathDetectInfo;
    case VxItems::EnvVariables:
        return new (std::nothrow) CEnvDetectInfo;
    case VxItems::UsbControllerDriver:
        return new (std::nothrow) CUSBControllerDriverInfo;
    case VxItems::LineRate:
        return new (std::nothrow) CNetworkSpeedDetectInfo;
    case VxItems::JumboFrame:
        return new (std::nothrow) CJumboPacketDetectInfo;
    case VxItems::UsbControllerInfo:
        return new (std::nothrow) CUsbBasicDetectInfo;
    case VxItems::SystemInfo:
        return new (std::nothrow) CSystemDetectInfo;
    default:
        return new (std::nothrow) CDetectInfo;
    }
}
} // namespace

CDetectInfo *createDetectInfo(int nItem)
{
    CDetectInfo *pInfo = newRecordFor(nItem);
    if (!pInfo)
        pInfo = new CDetectInfo; // fall back to the plain record
    pInfo->nItem = nItem;
    pInfo->bNormal = 1;
    return pInfo;
}
