#include "cdetectinfo.h"
#include "dialogtestutil.h"
#include "vxgrabdumptool.h"
#include "vxoperatethread.h"
#include "vxplatformtexts.h"
#include "vxrepair.h"
#include "vxresulttext.h"
#include "vxsdkfilecleardlg.h"
#include "vxtipswidget.h"

#include <QFile>
#include <QLabel>
#include <QRegularExpression>
#include <QtTest>

// The texts of this platform speak of this platform: no Windows folders,
// blue screens or the Linux helper's program names in what a Linux user
// reads; the Windows texts stay as they are in the Windows sources.
class TstVxPlatformTexts : public QObject
{
    Q_OBJECT

    static QStringList foreignWords()
    {
        return {"System32", "SysWow64", "RunningTime", "Blue Screen", "Windows", "registry", ".exe", ".dll",
                "pkexec", "vetrix-helper", "helper"};
    }

    // Every text a widget tree shows in labels and hint lines.
    static QStringList shownTexts(const QWidget &widget)
    {
        QStringList listTexts;
        for (const QLabel *pLabel : widget.findChildren<QLabel *>())
            listTexts << pLabel->text();
        for (const VxTipsWidget *pTips : widget.findChildren<VxTipsWidget *>())
            listTexts << pTips->text();
        return listTexts;
    }

    // The hint line wraps its text with line breaks of its own.
    static QString withoutSpace(QString strText) { return strText.remove(QRegularExpression(QStringLiteral("\\s"))); }
    static QString joinedWithoutSpace(const QStringList &listTexts) { return withoutSpace(listTexts.join(QString())); }

    static void verifyNoForeignWords(const QStringList &listTexts)
    {
        for (const QString &strText : listTexts) {
            for (const QString &strWord : foreignWords())
                QVERIFY2(!strText.contains(strWord, Qt::CaseInsensitive),
                         qPrintable(QStringLiteral("\"%1\" in: %2").arg(strWord, strText)));
        }
    }

private slots:
    void initTestCase() { QVERIFY(DialogTest::loadResources()); }

    void seamTexts()
    {
        const QStringList listTexts{VxPlatformTexts::sdkClearTips(), VxPlatformTexts::dumpToolExplanation(),
                                    VxPlatformTexts::sdkRightsUnavailable(), VxPlatformTexts::envRightsUnavailable(),
                                    VxPlatformTexts::jumboRightsUnavailable()};
        for (const QString &strText : listTexts)
            QVERIFY(!strText.isEmpty());
        verifyNoForeignWords(listTexts);
    }

    // The repair outcomes the result tree, the report and the warnings show.
    void repairOutcomes()
    {
        QStringList listTexts;
        for (VxRepairStatus status : {VxRepairStatus::NotAuthorized, VxRepairStatus::HelperMissing,
                                      VxRepairStatus::Refused, VxRepairStatus::Failed}) {
            listTexts << VxOperateThread::installFailureText(int(status));
            for (int nItem : {1, 2, 256}) {
                std::unique_ptr<CDetectInfo> pInfo(createDetectInfo(nItem));
                pInfo->bNormal = 0;
                pInfo->nRepairStatus = int(status);
                const QStringList listLines = VxResultText::itemLines(*pInfo);
                QVERIFY(!listLines.isEmpty());
                listTexts << listLines.last();
            }
        }
        verifyNoForeignWords(listTexts);
    }

    void sdkDialogHint()
    {
        CSDKPathDetectInfo info;
        info.foundFiles = {{"libLuCameraControl.so", {"/usr/lib"}}};
        info.bNormal = 0;
        VxSDKFileClearDlg dialog(&info);
        const QStringList listTexts = shownTexts(dialog);
        QVERIFY(joinedWithoutSpace(listTexts).contains(withoutSpace(VxPlatformTexts::sdkClearTips())));
        verifyNoForeignWords(listTexts);
    }

    void dumpToolExplanation()
    {
        VxGrabDumpTool dialog;
        const QStringList listTexts = shownTexts(dialog);
        QVERIFY(joinedWithoutSpace(listTexts).contains(withoutSpace(VxPlatformTexts::dumpToolExplanation())));
        verifyNoForeignWords(listTexts);
    }

    // The Windows program keeps its own texts word for word.
    void windowsTextsKept_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("SDK hint") << "\"SDK files exist in directories such as System32 and SysWow64, which may "
                                     "cause software exception after upgrading software version. Please clear SDK "
                                     "files in directories except the RunningTime directory.\"";
        QTest::newRow("dump tool") << "\"After program crash or Blue Screen of Death, the tool acquires the Dump "
                                      "files and save the files to the specified saving path.\"";
    }
    void windowsTextsKept()
    {
        QFETCH(QString, text);
        QFile source(QStringLiteral(VX_SOURCE_DIR "/dialogs/vxplatformtexts_win.cpp"));
        QVERIFY(source.open(QIODevice::ReadOnly));
        QVERIFY(QString::fromUtf8(source.readAll()).contains(text));
    }
};

QTEST_MAIN(TstVxPlatformTexts)
#include "tst_vxplatformtexts.moc"
