// dialogsdemo: opens one of the detail dialogs with fixture records. Repairs
// run against fake probes, so nothing on the machine changes. Options:
//   --dialog NAME   env, sdk, jumbo, netrate, usb, dump, sysinfo
//   --lang zh|en    language (loads bin/Translation/*.qm for zh)
//   --normal        the item's normal state instead of the exceptional one
//   --click         press the dialog's bottom button after a moment
//   --fail          the repair behind the button lacks the rights
#include "cdetectinfo.h"
#include "custom.h"
#include "demosetup.h"
#include "custommainwindow.h"
#include "custompushbutton.h"
#include "dumpgrabber.h"
#include "vxdialogprobes.h"
#include "vxenvcheckdlg.h"
#include "vxgrabdumptool.h"
#include "vxjumbpacketdlg.h"
#include "vxnetratedlg.h"
#include "vxsdkfilecleardlg.h"
#include "vxsysteminfodlg.h"
#include "vxusbdriverdlg.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QResource>
#include <QStyleFactory>
#include <QTemporaryDir>
#include <QTimer>
#include <QTranslator>

#include <memory>

namespace {

bool g_bNormal = false;
bool g_bFail = false;

void fillEnv(CEnvDetectInfo &info)
{
    info.currentValues = {{QStringLiteral("PATH"), QStringLiteral("/usr/local/bin:/usr/bin:/bin:/opt/Orvex/Runtime/Linux64_x64:")},
                          {QStringLiteral("LUCAM_COMMON_RUNENV"), QStringLiteral("/opt/Orvex/Development")},
                          {QStringLiteral("LUCAM_GIGE_DEBUG_HEARTBEAT"), QStringLiteral("60000")},
                          {QStringLiteral("LUCAM_GENICAM_CLPROTOCOL"), QStringLiteral("/opt/Orvex/Runtime/CLProtocol")},
                          {QStringLiteral("GENICAM_GENTL32_PATH"), QString()},
                          {QStringLiteral("GENICAM_GENTL64_PATH"), QStringLiteral("/opt/Orvex/Runtime/Linux64_x64:")}};
    info.missingValues.clear();
    info.bNormal = 1;
    if (!g_bNormal) {
        info.currentValues[QStringLiteral("LUCAM_GIGE_DEBUG_HEARTBEAT")] = QStringLiteral("abc");
        info.missingValues[QStringLiteral("PATH")] = QStringList{QStringLiteral("/opt/Orvex/Runtime/Linux32_i86:")};
        info.missingValues[QStringLiteral("LUCAM_GIGE_DEBUG_HEARTBEAT")] = QStringList{QStringLiteral("60000")};
        info.missingValues[QStringLiteral("GENICAM_GENTL32_PATH")] = QStringList{QStringLiteral("/opt/Orvex/Runtime/Linux32_i86:")};
        info.bNormal = 0;
    }
}

void fillJumbo(CJumboPacketDetectInfo &info, bool bRepaired)
{
    info.jumboStates = {{QStringLiteral("enp3s0"), 1}, {QStringLiteral("enp4s0"), 0}, {QStringLiteral("enx00e04c680001"), 2}};
    info.jumboValues = {{QStringLiteral("enp3s0"), 9014}, {QStringLiteral("enp4s0"), 1514},
                        {QStringLiteral("enx00e04c680001"), 1514}};
    if (g_bNormal || bRepaired) {
        info.jumboStates[QStringLiteral("enp4s0")] = 1;
        info.jumboValues[QStringLiteral("enp4s0")] = 9014;
    }
    info.bNormal = info.jumboStates.values().contains(0) ? 0 : 1;
}

// Fake probes: the repairs succeed, or lack the rights with --fail.
void installFakeProbes()
{
    VxProbeTable table;
    table.setRepair(VxItems::EnvVariables, [](CEnvDetectInfo &info) {
        if (g_bFail)
            return VxRepairOutcome(VxRepairStatus::NotAuthorized);
        info.missingValues.clear();
        info.bNormal = 1;
        return VxRepairOutcome();
    });
    table.setCheck(VxItems::EnvVariables, [](CEnvDetectInfo &info) {
        if (!g_bFail) {
            g_bNormal = true;
            fillEnv(info);
        }
    });
    table.setRepair(VxItems::JumboFrame, [](CJumboPacketDetectInfo &info) {
        if (g_bFail)
            return VxRepairOutcome(VxRepairStatus::NotAuthorized);
        fillJumbo(info, true);
        return VxRepairOutcome();
    });
    table.setRepair(VxItems::SdkFiles, [](CSDKPathDetectInfo &info) {
        info.foundFiles.clear();
        info.bNormal = 1;
        return VxRepairOutcome(g_bFail ? VxRepairStatus::NotAuthorized : VxRepairStatus::Done);
    });
    VxDialogProbes::setTable(table);
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QCommandLineParser parser;
    parser.addOption({QStringLiteral("dialog"), QStringLiteral("which dialog"), QStringLiteral("name"), QStringLiteral("env")});
    parser.addOption({QStringLiteral("lang"), QStringLiteral("zh or en"), QStringLiteral("lang"), QStringLiteral("en")});
    parser.addOption({QStringLiteral("normal"), QStringLiteral("normal state")});
    parser.addOption({QStringLiteral("click"), QStringLiteral("press the bottom button")});
    parser.addOption({QStringLiteral("fail"), QStringLiteral("the repair lacks the rights")});
    parser.process(app);
    g_bNormal = parser.isSet(QStringLiteral("normal"));
    g_bFail = parser.isSet(QStringLiteral("fail"));

    QTranslator program;
    QTranslator kit;
    setUpDemo(parser.value(QStringLiteral("lang")) == QLatin1String("zh"), program, kit);
    installFakeProbes();

    CEnvDetectInfo env;
    env.nItem = 2;
    fillEnv(env);
    QTemporaryDir tempDir; // stray "SDK files" that --fail leaves in place
    CSDKPathDetectInfo sdk;
    sdk.nItem = 1;
    const QStringList listDirs = {tempDir.path() + QStringLiteral("/usr/lib/x86_64-linux-gnu"),
                                  tempDir.path() + QStringLiteral("/usr/lib32")};
    for (const QString &strSub : listDirs) {
        QDir().mkpath(strSub);
        QFile(strSub + QStringLiteral("/libLuCameraControl.so")).open(QIODevice::WriteOnly);
    }
    if (!g_bNormal) {
        sdk.foundFiles[QStringLiteral("libLuCameraControl.so")] = listDirs;
        sdk.foundFiles[QStringLiteral("libLuUsb3vTL.so")] = QStringList{QStringLiteral("/usr/lib/x86_64-linux-gnu/orvex/gentl")};
        sdk.bNormal = 0;
    }
    CJumboPacketDetectInfo jumbo;
    jumbo.nItem = 256;
    fillJumbo(jumbo, false);
    CNetworkSpeedDetectInfo rate;
    rate.nItem = 128;
    rate.adapterSpeeds = {{QStringLiteral("enp3s0"), 1000}, {QStringLiteral("enx00e04c680001"), 2500}};
    if (!g_bNormal) {
        rate.adapterSpeeds[QStringLiteral("enp4s0")] = 100;
        rate.adapterSpeeds[QStringLiteral("wlp2s0")] = -1;
        rate.bNormal = 0;
    }
    CUSBControllerDriverInfo usb;
    usb.nItem = 32;
    usb.driverDesc = QStringLiteral("Intel Corporation Alder Lake-S PCH USB 3.2 Gen 2x2 XHCI Controller (xhci_hcd)");
    usb.providerName = QStringLiteral("The Linux Kernel");
    usb.driverDate = g_bNormal ? QStringLiteral("10-2-2024") : QStringLiteral("6-21-2006");
    usb.driverVersion = QStringLiteral("6.1.0-26-amd64");
    usb.bNormal = g_bNormal ? 1 : 0;
    CSystemDetectInfo sys;
    sys.nItem = 2048;
    sys.cpu = QStringLiteral("12th Gen Intel(R) Core(TM) i7-12700");
    sys.cpuCount = QStringLiteral("20");
    sys.availableMemory = QStringLiteral("31.1 GB");
    sys.byteOrder = QStringLiteral("Little-Endian");
    sys.operatingSystem = QStringLiteral("Debian GNU/Linux 12 (bookworm)");
    sys.graphicsChips = QStringLiteral("Intel Corporation AlderLake-S GT1; NVIDIA Corporation GA106 [GeForce RTX 3060]");
    sys.resolution = QStringLiteral("2560*1440");

    // The dump tool reads a fixture system root and writes below the
    // temporary folder.
    const QString strRoot = tempDir.path() + QStringLiteral("/root");
    for (const QString &strFile : {QStringLiteral("/var/crash/vmcore"),
                                   QStringLiteral("/var/lib/systemd/coredump/core.Quillscope.1000.b00t.4242.1700000000.zst")}) {
        QDir().mkpath(QFileInfo(strRoot + strFile).absolutePath());
        QFile(strRoot + strFile).open(QIODevice::WriteOnly);
    }
    qputenv("VETRIX_SYSROOT", strRoot.toLocal8Bit());
    DumpGrabber::setSavedTargetFolder(tempDir.path() + QStringLiteral("/Dump"));

    const QString strName = parser.value(QStringLiteral("dialog"));
    std::unique_ptr<CustomMainWindow> pDialog;
    if (strName == QLatin1String("env"))
        pDialog = std::make_unique<VxEnvCheckDlg>(&env);
    else if (strName == QLatin1String("sdk"))
        pDialog = std::make_unique<VxSDKFileClearDlg>(&sdk);
    else if (strName == QLatin1String("jumbo"))
        pDialog = std::make_unique<VxJumbPacketDlg>(&jumbo);
    else if (strName == QLatin1String("netrate"))
        pDialog = std::make_unique<VxNetRateDlg>(&rate);
    else if (strName == QLatin1String("usb"))
        pDialog = std::make_unique<VxUSBDriverDlg>(&usb);
    else if (strName == QLatin1String("dump"))
        pDialog = std::make_unique<VxGrabDumpTool>();
    else if (strName == QLatin1String("sysinfo"))
        pDialog = std::make_unique<VxSystemInfoDlg>(sys);
    else
        return 2;
    pDialog->setWindowTitle(strName);
    pDialog->move(60, 60);
    pDialog->show();
    if (parser.isSet(QStringLiteral("click"))) {
        QTimer::singleShot(700, pDialog.get(), [&pDialog] {
            if (CustomPushButton *pButton = pDialog->cButton(0))
                pButton->click();
        });
    }
    return app.exec();
}
