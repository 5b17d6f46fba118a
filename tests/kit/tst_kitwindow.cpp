// The frameless window: bottom buttons, title-bar controls and menus, and
// resizing through the stretch edges with mouse and keyboard.
#include "custommainwindow.h"
#include "custommenu.h"
#include "custompushbutton.h"
#include "customtitlebar.h"

#include <QAbstractButton>
#include <QApplication>
#include <QMouseEvent>
#include <QSignalSpy>
#include <QTest>

class TestWindow : public CustomMainWindow
{
public:
    using CustomMainWindow::CustomMainWindow;
    int nOkCalls = 0;

protected:
    void cOnOKClicked() override
    {
        ++nOkCalls;
        CustomMainWindow::cOnOKClicked();
    }
};

class TstKitWindow : public QObject
{
    Q_OBJECT

private:
    // Moves the mouse with the button held, as a drag does.
    static void dragMove(QWidget *pWidget, const QPoint &pos)
    {
        dragMoveGlobal(pWidget, pWidget->mapToGlobal(pos));
    }
    // The pointer's screen position does not follow the window it drags.
    static void dragMoveGlobal(QWidget *pWidget, const QPoint &globalPos)
    {
        QMouseEvent move(QEvent::MouseMove, pWidget->mapFromGlobal(globalPos), globalPos, Qt::NoButton,
                         Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(pWidget, &move);
    }

private slots:
    void buttonClickReportsIndex_data()
    {
        QTest::addColumn<QStringList>("listNames");
        QTest::addColumn<int>("nStandard");
        QTest::addColumn<int>("nClick");
        QTest::addRow("single custom button") << QStringList{"Repair"} << 0 << 0;
        QTest::addRow("middle of three") << QStringList{"A", "B", "C"} << 0 << 1;
        QTest::addRow("last of three") << QStringList{"A", "B", "C"} << 0 << 2;
        QTest::addRow("standard OK after a custom button") << QStringList{"Clear All"} << 1 << 1;
        QTest::addRow("standard OK alone") << QStringList{} << 1 << 0;
    }
    void buttonClickReportsIndex()
    {
        QFETCH(QStringList, listNames);
        QFETCH(int, nStandard);
        QFETCH(int, nClick);
        TestWindow window;
        window.cAddCustomButtons(listNames);
        window.cSetButtons(nStandard);
        QCOMPARE(window.cButtons().size(), listNames.size() + (nStandard ? 1 : 0));
        for (int i = 0; i < listNames.size(); ++i)
            QCOMPARE(window.cButton(i)->text(), listNames.at(i));
        QSignalSpy spy(&window, &CustomMainWindow::cSigButtonClick);
        QTest::mouseClick(window.cButton(nClick), Qt::LeftButton);
        QCOMPARE(spy.count(), 1);
        QCOMPARE(spy.at(0).at(0).toInt(), nClick);
        const bool bStandard = nClick >= listNames.size();
        QCOMPARE(window.nOkCalls, bStandard ? 1 : 0);
        QCOMPARE(window.result(), bStandard ? int(QDialog::Accepted) : int(QDialog::Rejected));
    }

    void renameKeepsCount_data()
    {
        QTest::addColumn<QStringList>("listNew");
        QTest::addColumn<QStringList>("listExpected");
        QTest::addRow("fewer names") << QStringList{"OK"} << QStringList{"OK", "Second"};
        QTest::addRow("same count") << QStringList{"OK", "Close"} << QStringList{"OK", "Close"};
        QTest::addRow("more names") << QStringList{"1", "2", "3"} << QStringList{"1", "2"};
        QTest::addRow("no names") << QStringList{} << QStringList{"Repair", "Second"};
    }
    void renameKeepsCount()
    {
        QFETCH(QStringList, listNew);
        QFETCH(QStringList, listExpected);
        CustomMainWindow window;
        window.cAddCustomButtons({"Repair", "Second"});
        window.cResetCustomButtonNames(listNew);
        QCOMPARE(window.cButtons().size(), 2);
        for (int i = 0; i < 2; ++i)
            QCOMPARE(window.cButton(i)->text(), listExpected.at(i));
    }

    void baseHandlerCloses()
    {
        CustomMainWindow window;
        window.cAddCustomButtons({"OK"});
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        window.cOnButtonClicked(0);
        QVERIFY(!window.isVisible());
        QCOMPARE(window.result(), int(QDialog::Accepted));
    }

    void titleControls_data()
    {
        QTest::addColumn<int>("nFlags");
        QTest::addColumn<bool>("bMin");
        QTest::addColumn<bool>("bMax");
        QTest::addColumn<bool>("bClose");
        QTest::addRow("main window 7") << 7 << true << true << true;
        QTest::addRow("dialog 4") << 4 << false << false << true;
        QTest::addRow("none 0") << 0 << false << false << false;
        QTest::addRow("min and close 5") << 5 << true << false << true;
    }
    void titleControls()
    {
        QFETCH(int, nFlags);
        QFETCH(bool, bMin);
        QFETCH(bool, bMax);
        QFETCH(bool, bClose);
        CustomMainWindow window;
        CustomTitleBar *pBar = window.cTitleBar();
        QVERIFY(pBar);
        pBar->cSetTitleControls(nFlags);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        auto visible = [pBar](CustomTitleBar::TitleControl e) {
            QAbstractButton *p = pBar->cControlButton(e);
            return p && p->isVisible();
        };
        QCOMPARE(visible(CustomTitleBar::MinimizeControl), bMin);
        QCOMPARE(visible(CustomTitleBar::MaximizeControl), bMax);
        QCOMPARE(visible(CustomTitleBar::CloseControl), bClose);
    }

    void closeControlCloses()
    {
        CustomMainWindow window;
        window.cTitleBar()->cSetTitleControls(4);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QTest::mouseClick(window.cTitleBar()->cControlButton(CustomTitleBar::CloseControl), Qt::LeftButton);
        QVERIFY(!window.isVisible());
    }

    void menusInTitleBar()
    {
        CustomMainWindow window;
        CustomTitleBar *pBar = window.cTitleBar();
        pBar->cSetTitleText("Vetrix Tool");
        QCOMPARE(pBar->cTitleText(), QString("Vetrix Tool"));
        auto *pFile = new CustomMenu(&window);
        pFile->setTitle("File");
        CustomPushButton *pFileButton = pBar->cAddMenu("File", pFile);
        QVERIFY(pFileButton);
        QCOMPARE(pFileButton->menu(), static_cast<QMenu *>(pFile));
        QCOMPARE(pFileButton->text(), QString("File"));
        // The button follows the menu's title (language switch).
        pFile->setTitle("Datei");
        QCOMPARE(pFileButton->text(), QString("Datei"));
        pBar->cAddMenuLayoutStretch();
        CustomPushButton *pPlain = pBar->cAddMenu(QString(), nullptr);
        QVERIFY(pPlain);
        QVERIFY(!pPlain->menu());
        QVERIFY(pPlain->text().isEmpty());
        pPlain->setFixedSize(24, 24);
        window.resize(900, 300);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        // After the stretch the plain button sits at the right end, next to
        // the window controls.
        const int nPlainRight = pPlain->mapTo(pBar, QPoint(pPlain->width(), 0)).x();
        const int nControlsLeft = pBar->cControlButton(CustomTitleBar::MinimizeControl)->mapTo(pBar, QPoint()).x();
        QVERIFY2(nControlsLeft - nPlainRight < 40, qPrintable(QString::number(nControlsLeft - nPlainRight)));
        QVERIFY(pFileButton->mapTo(pBar, QPoint()).x() < pBar->width() / 2);
    }

    void edgeResize_data()
    {
        QTest::addColumn<int>("nEdges");
        QTest::addColumn<QString>("strWhere");
        QTest::addColumn<QPoint>("delta");
        QTest::addColumn<QRect>("expectedChange"); // dx, dy, dw, dh
        QTest::addRow("right edge wider") << 203 << "right" << QPoint(50, 0) << QRect(0, 0, 50, 0);
        QTest::addRow("bottom edge taller") << 203 << "bottom" << QPoint(0, 40) << QRect(0, 0, 0, 40);
        QTest::addRow("left edge moves the left side") << 203 << "left" << QPoint(-30, 0) << QRect(-30, 0, 30, 0);
        QTest::addRow("bottom-right corner both") << 203 << "bottomright" << QPoint(25, 35) << QRect(0, 0, 25, 35);
        QTest::addRow("top edge not allowed by 203") << 203 << "top" << QPoint(0, -40) << QRect(0, 0, 0, 0);
        QTest::addRow("no edges allowed") << 0 << "right" << QPoint(50, 0) << QRect(0, 0, 0, 0);
        QTest::addRow("narrower stops at the minimum") << 203 << "right" << QPoint(-1000, 0) << QRect(0, 0, -100, 0);
    }
    void edgeResize()
    {
        QFETCH(int, nEdges);
        QFETCH(QString, strWhere);
        QFETCH(QPoint, delta);
        QFETCH(QRect, expectedChange);
        CustomMainWindow window;
        window.cSetStrechEdges(nEdges);
        window.cSetMinStrechSize(QSize(500, 300));
        window.setGeometry(100, 100, 600, 400);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        const QRect before = window.geometry();
        const int w = window.width(), h = window.height();
        QPoint press;
        if (strWhere == "right")
            press = QPoint(w - 1, h / 2);
        else if (strWhere == "left")
            press = QPoint(0, h / 2);
        else if (strWhere == "bottom")
            press = QPoint(w / 2, h - 1);
        else if (strWhere == "top")
            press = QPoint(w / 2, 0);
        else
            press = QPoint(w - 1, h - 1);
        QTest::mousePress(&window, Qt::LeftButton, Qt::NoModifier, press);
        dragMove(&window, press + delta);
        QTest::mouseRelease(&window, Qt::LeftButton, Qt::NoModifier, press + delta);
        const QRect after = window.geometry();
        QCOMPARE(after.x() - before.x(), expectedChange.x());
        QCOMPARE(after.y() - before.y(), expectedChange.y());
        QCOMPARE(after.width() - before.width(), expectedChange.width());
        QCOMPARE(after.height() - before.height(), expectedChange.height());
    }

    void titleBarDragMoves_data()
    {
        QTest::addColumn<QPoint>("delta");
        QTest::addColumn<QPoint>("expectedMove");
        QTest::addRow("drag moves the window") << QPoint(40, 25) << QPoint(40, 25);
        QTest::addRow("a jitter stays a click") << QPoint(1, 1) << QPoint(0, 0);
    }
    void titleBarDragMoves()
    {
        QFETCH(QPoint, delta);
        QFETCH(QPoint, expectedMove);
        CustomMainWindow window;
        window.cTitleBar()->cSetTitleText("Title");
        window.setGeometry(200, 150, 500, 300);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        const QPoint before = window.pos();
        CustomTitleBar *pBar = window.cTitleBar();
        const QPoint press(pBar->width() / 2, pBar->height() / 2);
        const QPoint globalPress = pBar->mapToGlobal(press);
        QTest::mousePress(pBar, Qt::LeftButton, Qt::NoModifier, press);
        // Two steps, as a real drag delivers several moves.
        dragMoveGlobal(pBar, globalPress + delta / 2);
        dragMoveGlobal(pBar, globalPress + delta);
        QTest::mouseRelease(pBar, Qt::LeftButton, Qt::NoModifier, press + delta);
        QCOMPARE(window.pos() - before, expectedMove);
    }

    void titleBarDoubleClickMaximises_data()
    {
        QTest::addColumn<int>("nControls");
        QTest::addColumn<bool>("bFixed");
        QTest::addColumn<bool>("bMaximised");
        QTest::addRow("main window") << 7 << false << true;
        QTest::addRow("without maximise control") << 4 << false << false;
        QTest::addRow("fixed size") << 7 << true << false;
    }
    void titleBarDoubleClickMaximises()
    {
        QFETCH(int, nControls);
        QFETCH(bool, bFixed);
        QFETCH(bool, bMaximised);
        CustomMainWindow window;
        window.cTitleBar()->cSetTitleControls(nControls);
        window.setGeometry(200, 150, 500, 300);
        if (bFixed)
            window.setFixedSize(500, 300);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QTest::mouseDClick(window.cTitleBar(), Qt::LeftButton, Qt::NoModifier, QPoint(100, 10));
        QTRY_COMPARE(window.isMaximized(), bMaximised);
        if (bMaximised) {
            // No frame margin while maximised; a second double click restores.
            QCOMPARE(window.cFrameMargin(), 0);
            QTest::mouseDClick(window.cTitleBar(), Qt::LeftButton, Qt::NoModifier, QPoint(100, 10));
            QTRY_VERIFY(!window.isMaximized());
            QVERIFY(window.cFrameMargin() > 0);
        }
    }

    void keyboardResizeAndMove()
    {
        CustomMainWindow window;
        window.cSetStrechEdges(203);
        window.setGeometry(100, 100, 600, 400);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QTest::keyClick(&window, Qt::Key_F8, Qt::AltModifier);
        QTest::keyClick(&window, Qt::Key_Right);
        QTest::keyClick(&window, Qt::Key_Down);
        QTest::keyClick(&window, Qt::Key_Return);
        QCOMPARE(window.size(), QSize(610, 410));
        const QPoint before = window.pos();
        QTest::keyClick(&window, Qt::Key_F7, Qt::AltModifier);
        QTest::keyClick(&window, Qt::Key_Left);
        QTest::keyClick(&window, Qt::Key_Return);
        QCOMPARE(window.pos(), before - QPoint(10, 0));
        // Arrows outside the modes do not touch the window.
        QTest::keyClick(&window, Qt::Key_Left);
        QCOMPARE(window.pos(), before - QPoint(10, 0));
    }

    void escapeClosesDialogsOnly_data()
    {
        QTest::addColumn<int>("nControls");
        QTest::addColumn<bool>("bClosed");
        QTest::addRow("dialog with close control") << 4 << true;
        QTest::addRow("main window") << 7 << false;
    }
    void escapeClosesDialogsOnly()
    {
        QFETCH(int, nControls);
        QFETCH(bool, bClosed);
        CustomMainWindow window;
        window.cTitleBar()->cSetTitleControls(nControls);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QTest::keyClick(&window, Qt::Key_Escape);
        QCOMPARE(!window.isVisible(), bClosed);
    }

    void faceColourFromSetter()
    {
        CustomMainWindow window;
        window.cSetBackgroundColor(QColor("#F2F3F5"));
        window.resize(300, 200);
        const QImage shot = window.grab().toImage();
        QCOMPARE(QColor(shot.pixel(150, 120)), QColor("#F2F3F5"));
        QVERIFY(window.styleSheet().isEmpty());
    }

    void centralWidgetReplaced()
    {
        CustomMainWindow window;
        QPointer<QWidget> pFirst = new QWidget;
        window.cSetCentralWidget(pFirst);
        QCOMPARE(window.cCentralWidget(), pFirst.data());
        QVERIFY(window.isAncestorOf(pFirst));
        auto *pSecond = new QWidget;
        window.cSetCentralWidget(pSecond);
        QVERIFY(pFirst.isNull());
        QCOMPARE(window.cCentralWidget(), pSecond);
    }
};

QTEST_MAIN(TstKitWindow)
#include "tst_kitwindow.moc"
