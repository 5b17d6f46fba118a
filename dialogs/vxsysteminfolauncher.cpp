#include "vxsysteminfolauncher.h"

#include "vxsysteminfodlg.h"

#include <QProcess>
#include <QStandardPaths>

namespace {
VxSystemInfoLauncher::Starter &starter()
{
    static VxSystemInfoLauncher::Starter fn;
    return fn;
}
} // namespace

void VxSystemInfoLauncher::setStarter(Starter fn)
{
    starter() = std::move(fn);
}

VxSystemInfoLauncher::CViewer VxSystemInfoLauncher::findViewer()
{
    for (const CViewer &viewer : candidates(qEnvironmentVariable("XDG_CURRENT_DESKTOP"))) {
        const QString strPath = QStandardPaths::findExecutable(viewer.strProgram);
        if (!strPath.isEmpty())
            return {strPath, viewer.listArgs};
    }
    return {};
}

VxSystemInfoLauncher::Outcome VxSystemInfoLauncher::open(QWidget *pParent, const CSystemDetectInfo &info)
{
    const CViewer viewer = findViewer();
    if (!viewer.strProgram.isEmpty()) {
        const bool bStarted = starter() ? starter()(viewer.strProgram, viewer.listArgs)
                                        : QProcess::startDetached(viewer.strProgram, viewer.listArgs);
        if (bStarted)
            return StartedViewer;
    }
    VxSystemInfoDlg dialog(info, pParent);
    dialog.exec();
    return ShowedDialog;
}
