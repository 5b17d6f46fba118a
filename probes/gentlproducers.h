#pragma once

#include "cdetectinfo.h"
#include "vxchange.h"

#include <QByteArray>
#include <QJsonObject>
#include <QList>
#include <QMap>
#include <QStringList>

// What a binary's header says about it; read from the first bytes of the
// file, which is never loaded.
struct CBinaryFormat
{
    enum Kind { Other, Elf, Pe };
    Kind eKind = Other;
    int nBits = 0; // 32 or 64
    quint16 uMachine = 0; // ELF e_machine, PE Machine
    bool bLibrary = false; // ELF ET_DYN, PE with IMAGE_FILE_DLL
};

// One folder of a GenTL path variable.
struct CGenTLFolder
{
    int nBits = 64; // the variable: GENICAM_GENTL64_PATH or ..32_PATH
    QString strPath; // as the variable names it
    bool bExists = false;
    int nProducers = 0; // .cti files in it
};

// One .cti file found.
struct CGenTLProducer
{
    enum Problem { None, Unreadable, NotLibrary, WrongFormat };
    int nBits = 64;
    QString strFolder; // as the variable names it
    QString strName; // file name
    CBinaryFormat format;
    Problem eProblem = None;
};

// A producer file name in more than one folder of the same variable: the
// consumer loads both, and the cameras show up twice or not at all.
struct CGenTLDuplicate
{
    int nBits = 64;
    QString strName;
    QStringList folders;
};

// Item 32768 "GenTL producers": every folder of GENICAM_GENTL64_PATH (and
// of GENICAM_GENTL32_PATH where it is set) exists and holds at least one
// .cti, each .cti is a shared library of this system's format for that
// bitness, and no producer file name is in two folders of one variable.
// Nothing is repaired: the lines say what to fix.
class CGenTLDetectInfo : public CDetectInfo
{
public:
    CGenTLDetectInfo() { nItem = 32768; }
    ~CGenTLDetectInfo() override;

    QMap<int, QString> variables; // 64 / 32 -> value; absent when not set
    QList<CGenTLFolder> folders;
    QList<CGenTLProducer> producers;
    QList<CGenTLDuplicate> duplicates;
};

namespace GenTLProducers {

constexpr quint32 kItemId = 32768;

// The variable's name for a bitness.
QString variableName(int nBits);

// The header's format; Other for anything that is not an ELF or PE file
// (a text file, a truncated header).
CBinaryFormat readFormat(const QByteArray &header);
// Readable description: "64-bit ELF library for x86-64".
QString describe(const CBinaryFormat &format);

void check(CGenTLDetectInfo &info);
bool isExceptional(const CGenTLDetectInfo &info);

// No repair: always empty.
VxPlan plan(const CGenTLDetectInfo &info);

// --- platform entry points ------------------------------------------------
// The variable's value (null when not set): Linux: this process's
// environment with the live root, else the root's /etc/environment;
// Windows: the process environment.
QString variableValue(const QString &strName);
// The separator of the variable's folder list (":" or ";").
QChar listSeparator();
// Where a folder of the variable is read (below the system root on Linux).
QString localPath(const QString &strFolder);
// The format this system loads for a bitness (bLibrary set).
CBinaryFormat expectedFormat(int nBits);
// Whether file names differ by case.
Qt::CaseSensitivity nameCase();

} // namespace GenTLProducers

QStringList genTLLines(const CGenTLDetectInfo &info);
QJsonObject genTLFacts(const CGenTLDetectInfo &info);
