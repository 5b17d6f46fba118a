// vetrix-check: the diagnosis without a window, for headless PCs and scripts.
// Runs the same operate thread and probes as the program and prints the
// report the program exports, or the same results as JSON.

#include "vxcheckreport.h"
#include "vxitemregistry.h"
#include "vxitems.h"
#include "vxoperatethread.h"
#include "vxresulttext.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QJsonDocument>
#include <QTranslator>

#include <cstdio>
#include <memory>
#include <vector>

namespace {
enum ExitCode { ExitNormal = 0, ExitExceptional = 1, ExitUsage = 2 };

void printErr(const QString &strText)
{
    std::fputs(qPrintable(strText + QLatin1Char('\n')), stderr);
}

void printOut(const QString &strText)
{
    const QByteArray bytes = strText.toUtf8();
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stdout);
}

// Installs the Chinese translations the program uses; false if one is missing.
bool installChinese(std::vector<std::unique_ptr<QTranslator>> &translators)
{
    // Loaded from the Translation folder itself: qt_zh_CN.qm pulls in Qt's
    // module catalogues from the folder it is loaded from.
    const QString strDir = QCoreApplication::applicationDirPath() + QStringLiteral("/Translation");
    for (const char *pFile : {"Vetrix_zh.qm", "Basekit_zh_CN.qm", "qt_zh_CN.qm"}) {
        auto translator = std::make_unique<QTranslator>();
        if (!translator->load(QString::fromLatin1(pFile), strDir))
            return false;
        translators.push_back(std::move(translator));
    }
    for (auto &translator : translators)
        QCoreApplication::installTranslator(translator.get());
    return true;
}

// Runs one detection pass over the mask and collects the report items. The
// records stay owned by the thread, which outlives the report.
QVector<VxCheckItem> runDiagnosis(VxOperateThread &thread, quint32 uMask)
{
    thread.setItemPause(0);

    // The probe times are taken on the worker, next to the probe calls.
    QMap<int, double> mapTimes;
    QElapsedTimer itemTimer;
    QObject::connect(
        &thread, &VxOperateThread::sigStartDetectItem, &thread, [&itemTimer](CDetectInfo *) { itemTimer.start(); },
        Qt::DirectConnection);
    QObject::connect(
        &thread, &VxOperateThread::sigEndDetectItem, &thread,
        [&](CDetectInfo *pInfo) { mapTimes[pInfo->nItem] = itemTimer.nsecsElapsed() / 1e6; }, Qt::DirectConnection);

    QEventLoop loop;
    QObject::connect(&thread, &VxOperateThread::sigEndOperate, &loop, &QEventLoop::quit);
    thread.startDetect(uMask);
    loop.exec();
    thread.wait();

    QVector<VxCheckItem> items;
    for (int nItem : VxCheckReport::reportableItems()) {
        if (!(uMask & quint32(nItem)))
            continue;
        VxCheckItem item;
        item.nItem = nItem;
        if (thread.probeTable().canDetect(nItem)) {
            item.pInfo = thread.detectInfo(nItem);
            item.dTimeMs = mapTimes.value(nItem);
        }
        item.bUnreadable = thread.probeTable().isUnreadable(nItem);
        items << item;
    }
    return items;
}
} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("vetrix-check"));
    QCoreApplication::setApplicationVersion(QStringLiteral(VX_VERSION));

    QCommandLineParser parser;
    parser.setApplicationDescription(QCoreApplication::translate("VxCheck",
        "Diagnoses whether this PC is fit to run GigE Vision and USB3 Vision cameras with the "
        "Orvex SDK, without a window.\n"
        "Exit status: 0 nothing exceptional, 1 something exceptional, 2 usage error."));
    const QCommandLineOption helpOption = parser.addHelpOption();
    const QCommandLineOption versionOption = parser.addVersionOption();
    const QCommandLineOption itemsOption(QStringLiteral("items"),
        QCoreApplication::translate("VxCheck", "Diagnose only these item ids, e.g. 1,2,128."),
        QCoreApplication::translate("VxCheck", "ids"));
    const QCommandLineOption formatOption(QStringLiteral("format"),
        QCoreApplication::translate("VxCheck", "Report format: text or json."),
        QCoreApplication::translate("VxCheck", "format"), QStringLiteral("text"));
    const QCommandLineOption outputOption(QStringLiteral("output"),
        QCoreApplication::translate("VxCheck",
            "Write the report to this file (the export format: UTF-8, "
            "CR LF) instead of stdout."),
        QCoreApplication::translate("VxCheck", "file"));
    const QCommandLineOption timingsOption(
        QStringLiteral("timings"), QCoreApplication::translate("VxCheck", "Add each item's probe time."));
    const QCommandLineOption langOption(QStringLiteral("lang"),
        QCoreApplication::translate("VxCheck", "Report language: ENG (default) or CH."),
        QCoreApplication::translate("VxCheck", "language"), QStringLiteral("ENG"));
    parser.addOptions({itemsOption, formatOption, outputOption, timingsOption, langOption});

    if (!parser.parse(QCoreApplication::arguments())) {
        printErr(parser.errorText());
        printErr(QCoreApplication::translate("VxCheck", "Try '%1 --help'.").arg(QStringLiteral("vetrix-check")));
        return ExitUsage;
    }
    if (parser.isSet(helpOption)) {
        printOut(parser.helpText());
        return ExitNormal;
    }
    if (parser.isSet(versionOption)) {
        printOut(QStringLiteral("vetrix-check %1\n").arg(QCoreApplication::applicationVersion()));
        return ExitNormal;
    }
    if (!parser.positionalArguments().isEmpty()) {
        printErr(QCoreApplication::translate("VxCheck", "Unexpected argument: %1")
                     .arg(parser.positionalArguments().constFirst()));
        return ExitUsage;
    }

    const QString strFormat = parser.value(formatOption);
    if (strFormat != QLatin1String("text") && strFormat != QLatin1String("json")) {
        printErr(QCoreApplication::translate("VxCheck", "Unknown format \"%1\": use text or json.").arg(strFormat));
        return ExitUsage;
    }
    const QString strLang = parser.value(langOption);
    if (strLang != QLatin1String("ENG") && strLang != QLatin1String("CH")) {
        printErr(QCoreApplication::translate("VxCheck", "Unknown language \"%1\": use ENG or CH.").arg(strLang));
        return ExitUsage;
    }
    quint32 uMask = VxItemRegistry::shownMask();
    if (parser.isSet(itemsOption)) {
        QString strError;
        if (!VxCheckReport::parseItems(parser.value(itemsOption), &uMask, &strError)) {
            printErr(strError);
            return ExitUsage;
        }
    }

    std::vector<std::unique_ptr<QTranslator>> translators;
    if (strLang == QLatin1String("CH") && !installChinese(translators))
        printErr(
            QCoreApplication::translate("VxCheck", "The Chinese translations are missing; the report is in English."));

    VxOperateThread::setWarningHandler([](QObject *, const QString &strInfo) { printErr(strInfo); });

    VxOperateThread thread;
    const QVector<VxCheckItem> items = runDiagnosis(thread, uMask);
    const bool bTimings = parser.isSet(timingsOption);

    // The report is built with CR LF, the export format; on stdout the lines
    // end in LF.
    QString strReport;
    if (strFormat == QLatin1String("json")) {
        strReport = QString::fromUtf8(QJsonDocument(VxCheckReport::json(items, bTimings)).toJson());
    } else {
        strReport = VxCheckReport::logText(items);
        if (bTimings)
            strReport += VxCheckReport::timingsText(items).replace(QLatin1Char('\n'), QStringLiteral("\r\n"));
    }

    int nExit = ExitNormal;
    for (const VxCheckItem &item : items) {
        if (VxCheckReport::isExceptional(item))
            nExit = ExitExceptional;
    }

    if (parser.isSet(outputOption)) {
        if (!VxResultText::writeLog(parser.value(outputOption), strReport)) {
            printErr(QCoreApplication::translate("VxCheck", "Cannot write \"%1\".").arg(parser.value(outputOption)));
            return ExitUsage;
        }
    } else {
        printOut(strReport.replace(QStringLiteral("\r\n"), QStringLiteral("\n")));
    }
    return nExit;
}
