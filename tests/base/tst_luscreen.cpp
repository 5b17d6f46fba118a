#include "luinterface.h"

#include <QEventLoop>
#include <QGuiApplication>
#include <QScreen>
#include <QThread>
#include <QtTest>

// The screen size with a GUI application (offscreen platform): read on the
// GUI thread, and from a worker thread through the GUI thread.
class TstLuScreen : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void fromGuiThread();
    void fromWorkerThread();

private:
    QString strExpected;
};

void TstLuScreen::initTestCase()
{
    // An empty system root: the DRM fallback has nothing to offer, so the
    // text can only come from the screen.
    qputenv("VETRIX_SYSROOT", "/nonexistent-vetrix-root");
    const QScreen *pScreen = QGuiApplication::primaryScreen();
    QVERIFY(pScreen);
    const QSize size = pScreen->size() * pScreen->devicePixelRatio();
    QVERIFY(!size.isEmpty());
    strExpected = QStringLiteral("%1 x %2").arg(size.width()).arg(size.height());
}

void TstLuScreen::fromGuiThread()
{
    QCOMPARE(LuInterface::resolution(), strExpected);
}

void TstLuScreen::fromWorkerThread()
{
    QString strResult;
    QThread *pThread = QThread::create([&strResult] { strResult = LuInterface::resolution(); });
    QEventLoop loop;
    connect(pThread, &QThread::finished, &loop, &QEventLoop::quit);
    pThread->start();
    loop.exec(); // serves the worker's request
    pThread->wait();
    delete pThread;
    QCOMPARE(strResult, strExpected);
}

QTEST_MAIN(TstLuScreen)
#include "tst_luscreen.moc"
