// usbviewdemo: opens the USB tree viewer on a captured machine's tree (the
// sysfs capture under tests/usb/fixtures), for looking at and capturing.
// Options:
//   --lang zh|en     language (loads bin/Translation/*.qm for zh)
//   --select NODE    controller, roothub, hub, keyboard or audio
//   --root DIR       another system root to read the tree from
#include "cdetectinfo.h"
#include "custom.h"
#include "demosetup.h"
#include "customtreewidget.h"
#include "usbprobe.h"
#include "vxusbbasicinfodlg.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QResource>
#include <QStyleFactory>
#include <QTranslator>

namespace {

QString nodeName(const QString &strSelect)
{
    if (strSelect == QLatin1String("roothub"))
        return QStringLiteral("Root Hub usb1 (USB 2.0)");
    if (strSelect == QLatin1String("hub"))
        return QStringLiteral("[Port1] DeviceConnected : QEMU USB Hub");
    if (strSelect == QLatin1String("keyboard"))
        return QStringLiteral("[Port1] DeviceConnected : QEMU USB Keyboard");
    if (strSelect == QLatin1String("audio"))
        return QStringLiteral("[Port3] DeviceConnected : QEMU USB Audio");
    return QString();
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QCommandLineParser parser;
    parser.addOption(
        {QStringLiteral("lang"), QStringLiteral("zh or en"), QStringLiteral("lang"), QStringLiteral("en")});
    parser.addOption({QStringLiteral("select"), QStringLiteral("node to select"), QStringLiteral("node"),
        QStringLiteral("controller")});
    parser.addOption(
        {QStringLiteral("root"), QStringLiteral("system root"), QStringLiteral("dir"), QStringLiteral(VX_USB_FIXTURE)});
    parser.process(app);

    QTranslator program;
    QTranslator kit;
    setUpDemo(parser.value(QStringLiteral("lang")) == QLatin1String("zh"), program, kit);

    qputenv("VETRIX_SYSROOT", parser.value(QStringLiteral("root")).toLocal8Bit());
    CUsbBasicDetectInfo info;
    info.nItem = 512;
    VxUsbProbe::usbTreeCheck(info);
    int nResult = 0;
    {
        VxUsbBasicInfoDlg dialog(&info);
        const QString strName = nodeName(parser.value(QStringLiteral("select")));
        if (!strName.isEmpty()) {
            const QList<QTreeWidgetItem *> listFound
                = dialog.tree()->findItems(strName, Qt::MatchExactly | Qt::MatchRecursive);
            if (!listFound.isEmpty())
                dialog.tree()->setCurrentItem(listFound.first());
        }
        nResult = dialog.exec();
    }
    VxUsbProbe::destroyTree(info.pRootItem);
    return nResult == QDialog::Accepted ? 0 : 1;
}
