#include "vxplatformtexts.h"

#include <QCoreApplication>

// On Linux the program runs as the user and asks for administrator rights
// (through polkit) for each repair; the SDK's stray libraries lie in the
// system library folders, and a system crash leaves a kernel crash dump.
namespace VxPlatformTexts {

QString sdkClearTips()
{
    return QCoreApplication::translate(
        "VxSDKFileClearDlg",
        "SDK files exist in system library folders such as /usr/lib, which may cause software exception after "
        "upgrading software version. Please clear the SDK files in these folders; the SDK's own installation folder "
        "is not affected.");
}

QString dumpToolExplanation()
{
    return QCoreApplication::translate("VxGrabDumpTool",
                                       "After a program crash or a kernel crash, the tool acquires the crash dump "
                                       "files and saves them to the specified saving path.");
}

QString sdkRightsUnavailable()
{
    return QCoreApplication::translate(
        "VxSDKFileClearDlg", "The SDK files were not cleared: the request for administrator rights could not be started.");
}

QString envRightsUnavailable()
{
    return QCoreApplication::translate(
        "VxEnvCheckDlg",
        "The environment variables were not repaired: the request for administrator rights could not be started.");
}

QString jumboRightsUnavailable()
{
    return QCoreApplication::translate(
        "VxJumbPacketDlg", "Jumbo frames were not enabled: the request for administrator rights could not be started.");
}

} // namespace VxPlatformTexts
