// Message box, loading box, save-done hint, folder field, push button images.
#include "customfolderselectwidget.h"
#include "customlinewidget.h"
#include "customloadingdialog.h"
#include "custommessagebox.h"
#include "custompushbutton.h"
#include "customsavedonehintdlg.h"

#include <QApplication>
#include <QDir>
#include <QImage>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

namespace {

// Clicks the bottom button at nIndex of the message box that is open next.
void clickLater(QObject *pContext, int nIndex, QString *pText = nullptr, QList<int> *pValues = nullptr)
{
    QTimer::singleShot(0, pContext, [=] {
        auto *pBox = qobject_cast<CustomMessageBox *>(QApplication::activeModalWidget());
        if (!pBox)
            return;
        if (pText)
            *pText = pBox->cText();
        if (pValues)
            *pValues = pBox->cButtonValues();
        if (nIndex < 0)
            QTest::keyClick(pBox, Qt::Key_Escape);
        else
            QTest::mouseClick(pBox->cButton(nIndex), Qt::LeftButton);
    });
}

class TestSaveDone : public CustomSaveDoneHintDlg
{
public:
    using CustomSaveDoneHintDlg::CustomSaveDoneHintDlg;
    int nOpened = 0;

protected:
    bool cOpenFolder() override
    {
        ++nOpened;
        return true;
    }
};

} // namespace

class TstKitBoxes : public QObject
{
    Q_OBJECT

private slots:
    void messageBoxReturnsClickedButton_data()
    {
        QTest::addColumn<int>("nButtons");
        QTest::addColumn<int>("nClick");
        QTest::addColumn<QList<int>>("listValues");
        QTest::addColumn<int>("nExpected");
        QTest::addRow("OK alone") << 1 << 0 << QList<int>{1} << 1;
        QTest::addRow("OK of OK and Cancel") << (1 | 2) << 0 << QList<int>{1, 2} << 1;
        QTest::addRow("Cancel of OK and Cancel") << (1 | 2) << 1 << QList<int>{1, 2} << 2;
        QTest::addRow("No of Yes and No") << (4 | 8) << 1 << QList<int>{4, 8} << 8;
        QTest::addRow("Escape gives 0") << 1 << -1 << QList<int>{1} << 0;
        QTest::addRow("no buttons asked gives OK") << 0 << 0 << QList<int>{1} << 1;
    }
    void messageBoxReturnsClickedButton()
    {
        QFETCH(int, nButtons);
        QFETCH(int, nClick);
        QFETCH(QList<int>, listValues);
        QFETCH(int, nExpected);
        QString strText;
        QList<int> listSeen;
        clickLater(this, nClick, &strText, &listSeen);
        const int nResult = CustomMessageBox::warning(nullptr, "The file path is too long.", "Prompt", nButtons, QString());
        QCOMPARE(strText, QString("The file path is too long."));
        QCOMPARE(listSeen, listValues);
        QCOMPARE(nResult, nExpected);
    }

    void messageBoxTexts()
    {
        CustomMessageBox box(CustomMessageBox::Information, "Main", "Title", CustomMessageBox::Ok, nullptr, "More");
        QCOMPARE(box.cText(), QString("Main"));
        QCOMPARE(box.cInformativeText(), QString("More"));
        QCOMPARE(box.windowTitle(), QString("Title"));
        QCOMPARE(box.cButtons().size(), 1);
        QCOMPARE(box.cButton(0)->text(), QString("OK"));
    }

    void loadingDialogTurns()
    {
        QWidget parent;
        parent.setGeometry(100, 100, 800, 600);
        parent.show();
        auto *pLoading = new CustomLoadingDialog(&parent);
        pLoading->SetLabelText("Repairing environment variables...");
        QCOMPARE(pLoading->LabelText(), QString("Repairing environment variables..."));
        pLoading->setModal(true);
        pLoading->show();
        QVERIFY(QTest::qWaitForWindowExposed(pLoading));
        // Centred over the parent window.
        QVERIFY(qAbs(pLoading->geometry().center().x() - parent.geometry().center().x()) <= 1);
        const int nStart = pLoading->cAngle();
        QTRY_VERIFY(pLoading->cAngle() != nStart);
        // Escape does not end the box; close() does.
        QTest::keyClick(pLoading, Qt::Key_Escape);
        QVERIFY(pLoading->isVisible());
        QVERIFY(pLoading->close());
        QVERIFY(!pLoading->isVisible());
        const int nStopped = pLoading->cAngle();
        QTest::qWait(100);
        QCOMPARE(pLoading->cAngle(), nStopped);
        pLoading->deleteLater();
    }

    void saveDoneHint_data()
    {
        QTest::addColumn<int>("nClick");
        QTest::addColumn<int>("nOpened");
        QTest::addRow("Open Folder opens and closes") << 0 << 1;
        QTest::addRow("OK only closes") << 1 << 0;
    }
    void saveDoneHint()
    {
        QFETCH(int, nClick);
        QFETCH(int, nOpened);
        // An absolute path on every platform ("C:/data/..." on Windows).
        const QString strDir = QDir::rootPath() + QStringLiteral("data/VetrixTool");
        TestSaveDone dialog(strDir + "/Log_1.log", "Diagnosis result is exported.");
        QCOMPARE(dialog.cFilePath(), strDir + "/Log_1.log");
        QCOMPARE(dialog.cFolderUrl(), QUrl::fromLocalFile(strDir));
        QCOMPARE(dialog.cButtons().size(), 2);
        QCOMPARE(dialog.cButton(0)->text(), QString("Open Folder"));
        QCOMPARE(dialog.cButton(1)->text(), QString("OK"));
        dialog.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));
        QTest::mouseClick(dialog.cButton(nClick), Qt::LeftButton);
        QCOMPARE(dialog.nOpened, nOpened);
        QVERIFY(!dialog.isVisible());
    }

    void folderFieldWithoutAutoSelect()
    {
        CustomFolderSelectWidget field;
        field.cSetEnableSearchButton(true);
        field.cSetAutoSelectFolder(false);
        field.setReadOnly(true);
        field.setText("/tmp/Dump");
        QVERIFY(field.isReadOnly());
        QCOMPARE(field.text(), QString("/tmp/Dump"));
        QSignalSpy spy(&field, &CustomFolderSelectWidget::cSigSearchClicked);
        field.show();
        QVERIFY(QTest::qWaitForWindowExposed(&field));
        QVERIFY(field.cSearchButton()->isVisible());
        QTest::mouseClick(field.cSearchButton(), Qt::LeftButton);
        QCOMPARE(spy.count(), 1);
        QCOMPARE(field.text(), QString("/tmp/Dump"));
        field.cSetEnableSearchButton(false);
        QVERIFY(!field.cSearchButton()->isVisible());
    }

    void buttonDrawsStateImage_data()
    {
        QTest::addColumn<bool>("bEnabled");
        QTest::addColumn<QColor>("expected");
        QTest::addRow("normal image") << true << QColor(Qt::red);
        QTest::addRow("disabled image") << false << QColor(Qt::blue);
    }
    void buttonDrawsStateImage()
    {
        QFETCH(bool, bEnabled);
        QFETCH(QColor, expected);
        QTemporaryDir dir;
        const auto makeImage = [&dir](const QString &strName, const QColor &color) {
            QImage image(24, 24, QImage::Format_ARGB32);
            image.fill(color);
            const QString strPath = dir.filePath(strName);
            image.save(strPath);
            return strPath;
        };
        CustomPushButton button;
        button.cSetBackgroundImage(makeImage("n.png", Qt::red), CustomObject::StateNormal);
        button.cSetBackgroundImage(makeImage("d.png", Qt::blue), CustomObject::StateDisabled);
        QCOMPARE(button.cBackgroundImage(CustomObject::StateHover), dir.filePath("n.png"));
        button.setFixedSize(24, 24);
        button.setEnabled(bEnabled);
        QCOMPARE(button.cCurrentState(), bEnabled ? int(CustomObject::StateNormal) : int(CustomObject::StateDisabled));
        const QImage shot = button.grab().toImage();
        QCOMPARE(QColor(shot.pixel(12, 12)), expected);
    }

    // A small image in a wide cell keeps its size and sits in the middle.
    void buttonCentresSmallImage()
    {
        QTemporaryDir dir;
        QImage image(24, 24, QImage::Format_ARGB32);
        image.fill(Qt::red);
        QVERIFY(image.save(dir.filePath("clear.png")));
        CustomPushButton button;
        button.cSetBackgroundImage(dir.filePath("clear.png"));
        button.setFixedSize(90, 38);
        const QImage shot = button.grab().toImage();
        QCOMPARE(QColor(shot.pixel(45, 19)), QColor(Qt::red));
        QCOMPARE(QColor(shot.pixel(34, 8)), QColor(Qt::red));
        QVERIFY(QColor(shot.pixel(32, 19)) != QColor(Qt::red));
        QVERIFY(QColor(shot.pixel(45, 5)) != QColor(Qt::red));
    }

    void lineWidget_data()
    {
        QTest::addColumn<int>("nType");
        QTest::addColumn<int>("nHorizontalPolicy");
        QTest::addRow("type 1 horizontal") << 1 << int(QSizePolicy::Expanding);
        QTest::addRow("type 0 vertical") << 0 << int(QSizePolicy::Fixed);
    }
    void lineWidget()
    {
        QFETCH(int, nType);
        QFETCH(int, nHorizontalPolicy);
        CustomLineWidget line(nType);
        QCOMPARE(int(line.sizePolicy().horizontalPolicy()), nHorizontalPolicy);
        line.cSetBackgroundColor(QColor("#E4E7ED"));
        line.setFixedSize(10, 10);
        QCOMPARE(QColor(line.grab().toImage().pixel(5, 5)), QColor("#E4E7ED"));
    }
};

QTEST_MAIN(TstKitBoxes)
#include "tst_kitboxes.moc"
