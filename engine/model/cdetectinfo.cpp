#include "cdetectinfo.h"

CDetectInfo::~CDetectInfo() = default;
CSDKPathDetectInfo::~CSDKPathDetectInfo() = default;
CEnvDetectInfo::~CEnvDetectInfo() = default;
CUSBControllerDriverInfo::~CUSBControllerDriverInfo() = default;
CSystemDetectInfo::~CSystemDetectInfo() = default;
CJumboPacketDetectInfo::~CJumboPacketDetectInfo() = default;
CNetworkSpeedDetectInfo::~CNetworkSpeedDetectInfo() = default;
CUsbBasicDetectInfo::~CUsbBasicDetectInfo() = default;
