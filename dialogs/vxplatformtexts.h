#pragma once

#include <QString>

// Texts whose words depend on the platform the program runs on: folder
// names, the kind of system crash, how administrator rights are obtained.
// Each is translated in the context of the dialog that shows it.
namespace VxPlatformTexts {

// The SDK file dialog's hint (VxSDKFileClearDlg).
QString sdkClearTips();
// The dump tool's explanation under the folder field (VxGrabDumpTool).
QString dumpToolExplanation();

// Why a repair did not happen when the rights it needs could not even be
// asked for, per dialog.
QString sdkRightsUnavailable();
QString envRightsUnavailable();
QString jumboRightsUnavailable();

} // namespace VxPlatformTexts
