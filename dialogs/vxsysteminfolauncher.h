#pragma once

#include <QCoreApplication>
#include <QList>
#include <QStringList>

#include <functional>

class CSystemDetectInfo;
class QWidget;

// What the "Systm Info" item's button opens: the platform's own system
// information viewer when one is installed (Linux: the desktop's viewer
// found on PATH, e.g. kinfocenter, hardinfo or gnome-system-monitor on its
// resources tab; Windows: msinfo32), otherwise our VxSystemInfoDlg with the
// record's seven facts and a "Copy" button.
class VxSystemInfoLauncher
{
    Q_DECLARE_TR_FUNCTIONS(VxSystemInfoLauncher)
public:
    struct CViewer
    {
        QString strProgram; // executable name looked up on PATH
        QStringList listArgs;
    };
    enum Outcome { StartedViewer, ShowedDialog };

    // Starts the viewer detached, or shows our dialog modally (returns when
    // it is closed). Call on the GUI thread.
    static Outcome open(QWidget *pParent, const CSystemDetectInfo &info);

    // The viewers of this platform, best first for the desktop strDesktop
    // ($XDG_CURRENT_DESKTOP on Linux; ignored on Windows).
    static QList<CViewer> candidates(const QString &strDesktop);
    // The first candidate installed (found on PATH), with its full path in
    // strProgram; an empty strProgram when there is none.
    static CViewer findViewer();

    // Test seam: replaces the detached start (program path, arguments ->
    // started). An empty function restores QProcess::startDetached.
    using Starter = std::function<bool(const QString &, const QStringList &)>;
    static void setStarter(Starter starter);
};
