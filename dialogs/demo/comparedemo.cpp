// comparedemo: opens the report comparison dialog on two made-up reports (a
// camera that fell back to USB 2, a driver that is now missing, a CPU that
// changed), for looking at and capturing.
// Options:
//   --lang zh|en     language (loads bin/Translation/*.qm for zh)
//   --same           compare a report with itself
#include "demosetup.h"
#include "vxreportcomparedlg.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QJsonArray>
#include <QStyleFactory>

namespace {

QJsonObject report(bool bAfter)
{
    auto device = [](const QString &strPort, int nSpeed) {
        return QJsonObject {{"port", strPort}, {"vendorId", "1ab2"}, {"productId", "0001"},
            {"product", "USB3 Vision Camera"}, {"speed", nSpeed}};
    };
    QJsonArray devices {device("2-1", 5000)};
    devices << device("2-2", bAfter ? 480 : 5000);
    if (bAfter)
        devices << QJsonObject {{"port", "2-3"}, {"product", "USB Keyboard"}, {"speed", 12}};
    const QJsonObject usbFacts {{"hasTree", true},
        {"tree",
            QJsonObject {{"controllers",
                QJsonArray {QJsonObject {
                    {"pciAddress", "0000:00:14.0"}, {"name", "xHCI Host Controller"}, {"devices", devices}}}}}}};
    QJsonArray items;
    items << QJsonObject {{"id", 8}, {"name", "USB3 Vision Driver"}, {"available", true}, {"normal", !bAfter},
        {"severity", bAfter ? 1 : 0}};
    items << QJsonObject {{"id", 512}, {"name", "USB Controller Information"}, {"available", true}, {"normal", true},
        {"severity", 0}, {"facts", usbFacts}};
    items << QJsonObject {{"id", 2048}, {"name", "Systm Info"}, {"available", true}, {"normal", true}, {"severity", 0},
        {"facts",
            QJsonObject {
                {"cpu", bAfter ? "Intel(R) Core(TM) i7-9700" : "Intel(R) Core(TM) i5-8400"}, {"cpuCount", "8"}}}};
    return QJsonObject {{"tool", "vetrix-check"}, {"version", "4.1.0"}, {"items", items}};
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QCommandLineParser parser;
    parser.addOption(
        {QStringLiteral("lang"), QStringLiteral("zh or en"), QStringLiteral("lang"), QStringLiteral("en")});
    parser.addOption({QStringLiteral("same"), QStringLiteral("compare a report with itself")});
    parser.process(app);

    QTranslator program;
    QTranslator kit;
    setUpDemo(parser.value(QStringLiteral("lang")) == QLatin1String("zh"), program, kit);

    const QJsonObject before = report(false);
    const QJsonObject after = parser.isSet(QStringLiteral("same")) ? before : report(true);
    VxReportCompareDlg dialog(
        VxReportDiff::compare(before, after), QStringLiteral("/home/support/Data/VetrixTool/Log_20250225_140309.json"));
    return dialog.exec();
}
