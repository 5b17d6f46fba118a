// Vetrix Tool: start-up in a fixed order: resources, configuration, logging,
// style, language, one instance per desktop, then the main window.

#include "custom.h"
#include "luinterface.h"
#include "lunativeeventfilter.h"
#include "singleinstance.h"
#include "vxmainwindow.h"

#include <QApplication>
#include <QIcon>
#include <QResource>
#include <QStyleFactory>
#include <QTimer>

int main(int argc, char *argv[])
{
    auto *pApp = new QApplication(argc, argv);
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    const QString strDir = QCoreApplication::applicationDirPath();
    QResource::registerResource(strDir + QStringLiteral("/rcc/Panekit_Default.rcc"));
    QResource::registerResource(strDir + QStringLiteral("/rcc/Orvex.rcc"));
    LuInterface::setAppIniFile(QStringLiteral(":/Orvex/config/app.ini"));
    LuInterface::initLog4qtConfig(strDir + QStringLiteral("/log4qt/log4qt_Orvex.conf"));
    QCoreApplication::addLibraryPath(strDir + QStringLiteral("/plugins"));
    Custom::addXmlPath(QStringLiteral(":/Orvex/QSS/CustomStyleSheet_ox.xml"));
    Custom::setGlobalFontFamily(Custom::Language(0), QStringLiteral("Microsoft YaHei"));
    QCoreApplication::setAttribute(Qt::AA_NativeWindows, false);

    VxMainWindow::switchLanguage(LuInterface::language(true));
    const QString strArgument = VxMainWindow::commandLineLanguage(argc, argv);
    if (!strArgument.isEmpty())
        VxMainWindow::switchLanguage(strArgument);
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/Vetrix/Vetrix/Client.ico")));

    int nExit = 0;
    VxMainWindow *pWindow = nullptr;
    if (!VxSingleInstance::anotherInstanceRuns()) {
        pWindow = new VxMainWindow;
        VxSingleInstance::setMainWindow(pWindow);
        if (vxPlatformCheck()) {
            pWindow->show();
            auto *pFilter = new LuNativeEventFilter(pWindow);
            QCoreApplication::instance()->installNativeEventFilter(pFilter);
            // --quit-after-show ends the program once the window has been
            // shown and painted: the start-up benchmark measures that start.
            if (QCoreApplication::arguments().contains(QStringLiteral("--quit-after-show")))
                QTimer::singleShot(0, pApp, &QCoreApplication::quit);
            nExit = QApplication::exec();
            QCoreApplication::instance()->removeNativeEventFilter(pFilter);
            delete pFilter;
        }
        VxSingleInstance::release();
    }
    delete pWindow;
    delete pApp;
    return nExit;
}
