// The Windows resources of the programs: the manifest asks VetrixTool for
// administrator rights and vetrix-check for none, both declare Windows 10/11,
// and both carry the icon and their version. Read back from the built .exe
// files with the resource functions of Windows.
#include <QtTest>

#include <windows.h>

class TstWinResources : public QObject
{
    Q_OBJECT
private slots:
    void manifest_data();
    void manifest();
    void iconAndVersion_data();
    void iconAndVersion();
};

namespace {

QString programPath(const char *pName)
{
    return QDir::toNativeSeparators(QStringLiteral(VX_BIN_DIR "/") + QLatin1String(pName) + QStringLiteral(VX_EXE_SUFFIX));
}

// The bytes of one resource of a program, empty when it has none.
QByteArray resourceBytes(const QString &strProgram, LPCWSTR pType, LPCWSTR pName)
{
    HMODULE hModule = LoadLibraryExW(reinterpret_cast<LPCWSTR>(strProgram.utf16()), nullptr,
                                     LOAD_LIBRARY_AS_DATAFILE | LOAD_LIBRARY_AS_IMAGE_RESOURCE);
    if (!hModule)
        return QByteArray();
    QByteArray bytes;
    if (HRSRC hInfo = FindResourceW(hModule, pName, pType)) {
        const DWORD uSize = SizeofResource(hModule, hInfo);
        HGLOBAL hData = LoadResource(hModule, hInfo);
        if (const void *pData = hData ? LockResource(hData) : nullptr)
            bytes = QByteArray(static_cast<const char *>(pData), int(uSize));
    }
    FreeLibrary(hModule);
    return bytes;
}

} // namespace

void TstWinResources::manifest_data()
{
    QTest::addColumn<QString>("strProgram");
    QTest::addColumn<QString>("strLevel");
    QTest::addRow("VetrixTool") << programPath("VetrixTool") << QStringLiteral("requireAdministrator");
    QTest::addRow("vetrix-check") << programPath("vetrix-check") << QStringLiteral("asInvoker");
}

void TstWinResources::manifest()
{
    QFETCH(QString, strProgram);
    QFETCH(QString, strLevel);
    QVERIFY2(QFileInfo::exists(strProgram), qPrintable(strProgram));
    const QString strManifest = QString::fromUtf8(resourceBytes(strProgram, MAKEINTRESOURCEW(24), MAKEINTRESOURCEW(1)));
    QVERIFY2(!strManifest.isEmpty(), "no manifest (RT_MANIFEST 1)");
    QVERIFY(strManifest.contains(QStringLiteral("level=\"%1\"").arg(strLevel)));
    QVERIFY(strManifest.contains(QStringLiteral("uiAccess=\"false\"")));
    // Windows 10 and 11, 8.1, 8 and 7.
    for (const char *pId : {"8e0f7a12-bfb3-4fe8-b9a5-48fd50a15a9a", "1f676c76-80e1-4239-95bb-83d0f6d0da78",
                            "4a2f28e3-53b9-4441-ba9c-d69d4a4a6e38", "35138b9a-5d96-4fbd-8e2d-a2440225f93a"})
        QVERIFY2(strManifest.contains(QStringLiteral("<supportedOS Id=\"{%1}\"/>").arg(QLatin1String(pId))), pId);
}

void TstWinResources::iconAndVersion_data()
{
    QTest::addColumn<QString>("strProgram");
    QTest::addRow("VetrixTool") << programPath("VetrixTool");
    QTest::addRow("vetrix-check") << programPath("vetrix-check");
}

void TstWinResources::iconAndVersion()
{
    QFETCH(QString, strProgram);
    // The icon group 1 lists the sizes of Client.ico (header: reserved,
    // type 1, count).
    const QByteArray group = resourceBytes(strProgram, RT_GROUP_ICON, MAKEINTRESOURCEW(1));
    QVERIFY(group.size() >= 6);
    QCOMPARE(quint8(group.at(2)), quint8(1));
    QVERIFY(quint8(group.at(4)) > 0);

    const std::wstring path = strProgram.toStdWString();
    DWORD uHandle = 0;
    const DWORD uSize = GetFileVersionInfoSizeW(path.c_str(), &uHandle);
    QVERIFY(uSize > 0);
    QByteArray info(int(uSize), '\0');
    QVERIFY(GetFileVersionInfoW(path.c_str(), 0, uSize, info.data()));
    VS_FIXEDFILEINFO *pFixed = nullptr;
    UINT uLength = 0;
    QVERIFY(VerQueryValueW(info.constData(), L"\\", reinterpret_cast<void **>(&pFixed), &uLength));
    QVERIFY(pFixed);
    const QString strVersion = QStringLiteral("%1.%2.%3")
                                   .arg(HIWORD(pFixed->dwFileVersionMS))
                                   .arg(LOWORD(pFixed->dwFileVersionMS))
                                   .arg(HIWORD(pFixed->dwFileVersionLS));
    QCOMPARE(strVersion, QStringLiteral(VX_VERSION));
}

QTEST_GUILESS_MAIN(TstWinResources)
#include "tst_winresources.moc"
