// plandemo: the one-key page on fake probes, diagnosing three exceptional
// items and then pressing "Optimize Diagnosis", so that the question with
// the planned changes shows. Nothing on the machine changes. Options:
//   --lang zh|en    language (loads bin/Translation/*.qm for zh)
#include "cdetectinfo.h"
#include "custompushbutton.h"
#include "demosetup.h"
#include "vxonekeywidget.h"
#include "vxprobetable.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QTimer>

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    QCommandLineParser parser;
    parser.addOption(
        {QStringLiteral("lang"), QStringLiteral("zh or en"), QStringLiteral("lang"), QStringLiteral("en")});
    parser.process(app);
    QTranslator program;
    QTranslator kit;
    setUpDemo(parser.value(QStringLiteral("lang")) == QLatin1String("zh"), program, kit);

    VxProbeTable table;
    table.setCheck(VxItems::SdkFiles, [](CSDKPathDetectInfo &info) { info.bNormal = 0; });
    table.setRepair(VxItems::SdkFiles, [](CSDKPathDetectInfo &info) { info.bNormal = 1; });
    table.setPlan(VxItems::SdkFiles, [](const CSDKPathDetectInfo &) {
        return VxPlan {{VxItems::SdkFiles, VxChangeKind::SdkFile, QStringLiteral("/usr/lib/libLuCameraControl.so"),
            QStringLiteral("sha256:3f2a…9c1e"), QString()}};
    });
    table.setCheck(VxItems::EnvVariables, [](CEnvDetectInfo &info) { info.bNormal = 0; });
    table.setRepair(VxItems::EnvVariables, [](CEnvDetectInfo &info) { info.bNormal = 1; });
    table.setPlan(VxItems::EnvVariables, [](const CEnvDetectInfo &) {
        return VxPlan {{VxItems::EnvVariables, VxChangeKind::Environment, QStringLiteral("LUCAM_GIGE_DEBUG_HEARTBEAT"),
                           QString(), QStringLiteral("60000")},
            {VxItems::EnvVariables, VxChangeKind::Environment, QStringLiteral("GENICAM_GENTL64_PATH"), QString(),
                QStringLiteral("/opt/Orvex/Runtime/Linux64_x64:")}};
    });
    table.setCheck(VxItems::JumboFrame, [](CJumboPacketDetectInfo &info) { info.bNormal = 0; });
    table.setRepair(VxItems::JumboFrame, [](CJumboPacketDetectInfo &info) { info.bNormal = 1; });
    // No plan: listed as an item that will be repaired.

    VxOneKeyWidget page(nullptr, table);
    page.resize(1200, 700);
    page.show();
    QTimer::singleShot(300, &page, [&page] { page.operateButton2()->click(); });
    // Once the diagnosis is over, ask to optimise.
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &page, [&page, &poll] {
        if (page.state() != VxOneKeyWidget::DetectFinished || !page.isWorkerIdle())
            return;
        poll.stop();
        page.operateButton1()->click();
    });
    poll.start(200);
    return app.exec();
}
