#pragma once

#include <QString>
#include <QVariant>

// Common tools shared by the program and the widget kit: configuration,
// language, well-known paths, system facts, locale conversions and logging
// set-up. Each function is safe to call from any thread unless noted.
namespace LuInterface {

// --- configuration -------------------------------------------------------
// Remembers the application ini file (usually inside a resource package).
void setAppIniFile(const QString &strFile);
// Configures logging from a log4j-style properties file; a missing or broken
// file leaves Qt's defaults. Returns whether the file was applied.
bool initLog4qtConfig(const QString &strFile);
// Maker (OEM) configuration: the value of the key, or the default.
QVariant GetOEMCfgValue(const QString &strKey, const QVariant &defaultValue = QVariant());
// Software configuration texts ("Copyright_CN", "Copyright_EN", ...).
QString softwareConfigInfor(const QString &strKey);

// --- language ------------------------------------------------------------
// The language currently configured: "CH" or "ENG". Persisted per user.
QString language(int nReserved = 0);
void setLanguage(const QString &strLanguage);

// --- paths ---------------------------------------------------------------
QString userDataPath();    // the program's per-user data folder
QString localPath();       // the per-user local application data folder
QString commonFilesPath(); // the machine's common program files folder
QString appName();         // the SDK's folder name under commonFilesPath()
// The folder of a shell special folder given its CSIDL number (37 native
// system folder, 41 32-bit system folder), without a trailing separator.
QString systemDir(int nCsidl);
// 1 for the oldest supported Windows; other values name newer systems.
int systemName();
// The root below which every Linux system file is read: $VETRIX_SYSROOT or
// "/". sysPath("/proc/cpuinfo") joins an absolute path to that root.
QString sysRoot();
QString sysPath(const QString &strAbsolutePath);
// True when the system root is this running machine ("/"). Only then may a
// probe ask the running system itself (the kernel over netlink, services
// over D-Bus, the screen): with another root (a mounted image, a fixture
// tree) every fact comes from files below that root, or is not available.
bool isLiveRoot();

// --- locale converters ---------------------------------------------------
// Local 8-bit text to QString; nLength -1 means NUL-terminated.
QString char2QStringLocale(const char *pText, int nLength = -1);
// A QString into a byte buffer of nSize bytes in the local 8-bit encoding,
// cut to at most nSize - 1 bytes (never inside a multi-byte character) and
// always NUL-terminated. Returns bytes written
// without the NUL, or -1 when the buffer is null or nSize < 1.
int string2UcharLocale(const QString &strText, unsigned char *pBuffer, int nSize);
// A registry/byte string (NUL-terminated within nSize bytes) to QString.
QString GetEncodeQStringFromUnChar(const unsigned char *pData, int nSize);

// --- system facts (ready-to-show texts) ----------------------------------
QString cpu();
QString numOfCpu();
QString byteOrder();
QString graphicsChips();
QString availbleMmeory();
QString operatingSys();
QString resolution();

// --- desktop -------------------------------------------------------------
bool OpenHtmlByDefBrowser(const QString &strUrl);

} // namespace LuInterface
