#include "vxusbtreecli.h"

#include "usbprobe.h"
#include "usbtreejson.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QJsonDocument>

#include <cstdio>

namespace VxUsbTreeCli {

namespace {

const QString kOption = QStringLiteral("usb-tree");

void print(FILE *pFile, const QString &strText)
{
    const QByteArray bytes = strText.toUtf8();
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), pFile);
}

} // namespace

bool isRequested(const QStringList &listArguments)
{
    return listArguments.contains(QStringLiteral("--") + kOption);
}

bool render(const QString &strFormat, QString &strOut)
{
    UsbRootItem *pRoot = VxUsbProbe::buildTree();
    if (strFormat == QLatin1String("json")) {
        strOut = QString::fromUtf8(QJsonDocument(VxUsbProbe::treeJson(pRoot)).toJson(QJsonDocument::Indented));
    } else if (pRoot) {
        const QStringList lines = VxUsbProbe::treeText(pRoot);
        strOut = lines.isEmpty() ? QCoreApplication::translate("VxCheck", "No USB host controller was found.")
                                 : lines.join(QLatin1Char('\n'));
        strOut += QLatin1Char('\n');
    } else {
        strOut
            = QCoreApplication::translate("VxCheck", "The USB tree could not be read (the probe library is missing).")
            + QLatin1Char('\n');
    }
    VxUsbProbe::destroyTree(pRoot);
    return pRoot != nullptr;
}

int run(const QStringList &listArguments)
{
    QCommandLineParser parser;
    parser.addOption(QCommandLineOption(kOption));
    const QCommandLineOption formatOption(
        QStringLiteral("format"), QString(), QStringLiteral("format"), QStringLiteral("text"));
    parser.addOption(formatOption);
    if (!parser.parse(listArguments) || !parser.positionalArguments().isEmpty()) {
        print(stderr,
            QCoreApplication::translate("VxCheck", "Usage: %1 --usb-tree [--format text|json]")
                    .arg(QStringLiteral("vetrix-check"))
                + QLatin1Char('\n'));
        return 2;
    }
    const QString strFormat = parser.value(formatOption);
    if (strFormat != QLatin1String("text") && strFormat != QLatin1String("json")) {
        print(stderr,
            QCoreApplication::translate("VxCheck", "Unknown format \"%1\": use text or json.").arg(strFormat)
                + QLatin1Char('\n'));
        return 2;
    }
    QString strOut;
    const bool bTree = render(strFormat, strOut);
    print(bTree || strFormat == QLatin1String("json") ? stdout : stderr, strOut);
    return bTree ? 0 : 1;
}

} // namespace VxUsbTreeCli
