#include "vxplatformtexts.h"

#include <QCoreApplication>

// On Windows the program is started with administrator rights; one started
// without them cannot repair, and the user has to start it again as
// administrator. Each text stays on one line.
namespace VxPlatformTexts {

QString sdkClearTips()
{
    return QCoreApplication::translate("VxSDKFileClearDlg", "SDK files exist in directories such as System32 and SysWow64, which may cause software exception after upgrading software version. Please clear SDK files in directories except the RunningTime directory.");
}

QString dumpToolExplanation()
{
    return QCoreApplication::translate("VxGrabDumpTool", "After program crash or Blue Screen of Death, the tool acquires the Dump files and save the files to the specified saving path.");
}

QString sdkRightsUnavailable()
{
    return QCoreApplication::translate("VxSDKFileClearDlg", "The SDK files were not cleared: the program does not run as administrator. Please start it again as administrator.");
}

QString envRightsUnavailable()
{
    return QCoreApplication::translate("VxEnvCheckDlg", "The environment variables were not repaired: the program does not run as administrator. Please start it again as administrator.");
}

QString jumboRightsUnavailable()
{
    return QCoreApplication::translate("VxJumbPacketDlg", "Jumbo frames were not enabled: the program does not run as administrator. Please start it again as administrator.");
}

} // namespace VxPlatformTexts
