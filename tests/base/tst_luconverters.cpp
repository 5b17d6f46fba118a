#include "luinterface.h"

#include <QTextCodec>
#include <QtTest>

#include <cstring>

class TstLuConverters : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void char2QStringLocale_data();
    void char2QStringLocale();
    void string2UcharLocale_data();
    void string2UcharLocale();
    void getEncodeQStringFromUnChar_data();
    void getEncodeQStringFromUnChar();
};

// The local 8-bit encoding of the test is UTF-8, whatever the machine uses.
void TstLuConverters::initTestCase()
{
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
}

void TstLuConverters::char2QStringLocale_data()
{
    QTest::addColumn<QByteArray>("input");
    QTest::addColumn<int>("nLength");
    QTest::addColumn<QString>("strExpected");

    QTest::addRow("ascii terminated") << QByteArray("Orvex") << -1 << QStringLiteral("Orvex");
    QTest::addRow("german umlauts") << QByteArray("Gr\xc3\xbc\xc3\x9f" "e") << -1 << QString::fromUtf8("Grüße");
    QTest::addRow("chinese") << QByteArray("\xe4\xb8\xad\xe6\x96\x87") << -1 << QString::fromUtf8("中文");
    QTest::addRow("explicit length cuts") << QByteArray("abcdef") << 3 << QStringLiteral("abc");
    QTest::addRow("zero length") << QByteArray("abc") << 0 << QString();
    QTest::addRow("stops at NUL") << QByteArray("ab\0cd", 5) << -1 << QStringLiteral("ab");
}

void TstLuConverters::char2QStringLocale()
{
    QFETCH(QByteArray, input);
    QFETCH(int, nLength);
    QFETCH(QString, strExpected);
    QCOMPARE(LuInterface::char2QStringLocale(input.constData(), nLength), strExpected);
}

void TstLuConverters::string2UcharLocale_data()
{
    QTest::addColumn<QString>("strInput");
    QTest::addColumn<int>("nSize");
    QTest::addColumn<int>("nExpectedReturn");
    QTest::addColumn<QByteArray>("expectedBytes");

    QTest::addRow("fits") << QStringLiteral("abc") << 16 << 3 << QByteArray("abc");
    QTest::addRow("exactly fits with NUL") << QStringLiteral("abc") << 4 << 3 << QByteArray("abc");
    QTest::addRow("cut at buffer size") << QStringLiteral("abcdef") << 4 << 3 << QByteArray("abc");
    QTest::addRow("one byte buffer holds only NUL") << QStringLiteral("abc") << 1 << 0 << QByteArray();
    QTest::addRow("empty text") << QString() << 8 << 0 << QByteArray();
    QTest::addRow("chinese fits") << QString::fromUtf8("中文") << 7 << 6 << QByteArray("\xe4\xb8\xad\xe6\x96\x87");
    QTest::addRow("chinese not split mid character") << QString::fromUtf8("中文") << 6 << 3 << QByteArray("\xe4\xb8\xad");
    QTest::addRow("chinese too small for one character") << QString::fromUtf8("中文") << 3 << 0 << QByteArray();
    QTest::addRow("surrogate pair kept whole") << QString::fromUtf8("a\xf0\x9f\x98\x80") << 4 << 1 << QByteArray("a");
    QTest::addRow("zero size") << QStringLiteral("abc") << 0 << -1 << QByteArray();
    QTest::addRow("negative size") << QStringLiteral("abc") << -5 << -1 << QByteArray();
}

void TstLuConverters::string2UcharLocale()
{
    QFETCH(QString, strInput);
    QFETCH(int, nSize);
    QFETCH(int, nExpectedReturn);
    QFETCH(QByteArray, expectedBytes);

    // A guard area after the buffer shows writes beyond nSize.
    unsigned char buffer[64];
    std::memset(buffer, 0xAB, sizeof(buffer));
    const int nReturn = LuInterface::string2UcharLocale(strInput, buffer, nSize);
    QCOMPARE(nReturn, nExpectedReturn);
    if (nSize >= 1) {
        QCOMPARE(QByteArray(reinterpret_cast<const char *>(buffer), nReturn), expectedBytes);
        QCOMPARE(int(buffer[nReturn]), 0);
        for (int i = nSize; i < int(sizeof(buffer)); ++i)
            QCOMPARE(int(buffer[i]), 0xAB);
    } else {
        QCOMPARE(int(buffer[0]), 0xAB);
    }
}

void TstLuConverters::getEncodeQStringFromUnChar_data()
{
    QTest::addColumn<QByteArray>("input");
    QTest::addColumn<int>("nSize");
    QTest::addColumn<QString>("strExpected");

    QTest::addRow("terminated inside size") << QByteArray("Intel\0junk", 10) << 10 << QStringLiteral("Intel");
    QTest::addRow("no NUL uses whole size") << QByteArray("abcdef") << 4 << QStringLiteral("abcd");
    QTest::addRow("chinese") << QByteArray("\xe9\xa9\xb1\xe5\x8a\xa8\0", 7) << 7 << QString::fromUtf8("驱动");
    QTest::addRow("zero size") << QByteArray("abc") << 0 << QString();
}

void TstLuConverters::getEncodeQStringFromUnChar()
{
    QFETCH(QByteArray, input);
    QFETCH(int, nSize);
    QFETCH(QString, strExpected);
    QCOMPARE(LuInterface::GetEncodeQStringFromUnChar(reinterpret_cast<const unsigned char *>(input.constData()), nSize),
             strExpected);
    QCOMPARE(LuInterface::GetEncodeQStringFromUnChar(nullptr, nSize), QString());
    QCOMPARE(LuInterface::char2QStringLocale(nullptr), QString());
}

QTEST_GUILESS_MAIN(TstLuConverters)
#include "tst_luconverters.moc"
