#include "gentlproducers.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QtEndian>

#include <cstring>

CGenTLDetectInfo::~CGenTLDetectInfo() = default;

namespace {

// Enough of a file for the ELF header or the PE headers behind a DOS stub.
constexpr int kHeaderBytes = 4096;

template <typename T> T readAt(const QByteArray &data, int nOffset, bool bBigEndian)
{
    T value = 0;
    memcpy(&value, data.constData() + nOffset, sizeof(T));
    return bBigEndian ? qFromBigEndian(value) : qFromLittleEndian(value);
}

CBinaryFormat readElf(const QByteArray &header)
{
    CBinaryFormat format;
    // e_ident: class at 4 (1: 32-bit, 2: 64-bit), data at 5 (1 LE, 2 BE);
    // e_type at 16, e_machine at 18.
    if (header.size() < 20 || (header.at(4) != 1 && header.at(4) != 2) || (header.at(5) != 1 && header.at(5) != 2))
        return format;
    const bool bBig = header.at(5) == 2;
    format.eKind = CBinaryFormat::Elf;
    format.nBits = header.at(4) == 2 ? 64 : 32;
    format.bLibrary = readAt<quint16>(header, 16, bBig) == 3; // ET_DYN
    format.uMachine = readAt<quint16>(header, 18, bBig);
    return format;
}

CBinaryFormat readPe(const QByteArray &header)
{
    CBinaryFormat format;
    if (header.size() < 0x40)
        return format;
    const quint32 uPe = readAt<quint32>(header, 0x3c, false);
    // "PE\0\0", then the file header (Machine, ..., Characteristics at 18)
    // and the optional header's magic (0x10b PE32, 0x20b PE32+).
    if (uPe > quint32(header.size()) - 26 || header.mid(int(uPe), 4) != QByteArray("PE\0\0", 4))
        return format;
    const int nFile = int(uPe) + 4;
    const quint16 uMagic = readAt<quint16>(header, nFile + 20, false);
    if (uMagic != 0x10b && uMagic != 0x20b)
        return format;
    format.eKind = CBinaryFormat::Pe;
    format.nBits = uMagic == 0x20b ? 64 : 32;
    format.uMachine = readAt<quint16>(header, nFile, false);
    format.bLibrary = (readAt<quint16>(header, nFile + 18, false) & 0x2000) != 0; // IMAGE_FILE_DLL
    return format;
}

QString machineName(const CBinaryFormat &format)
{
    if (format.eKind == CBinaryFormat::Elf) {
        switch (format.uMachine) {
        case 3:
            return QStringLiteral("x86");
        case 62:
            return QStringLiteral("x86-64");
        case 40:
            return QStringLiteral("ARM");
        case 183:
            return QStringLiteral("AArch64");
        default:
            break;
        }
    } else {
        switch (format.uMachine) {
        case 0x14c:
            return QStringLiteral("x86");
        case 0x8664:
            return QStringLiteral("x86-64");
        case 0x1c4:
            return QStringLiteral("ARM");
        case 0xaa64:
            return QStringLiteral("ARM64");
        default:
            break;
        }
    }
    return QStringLiteral("0x%1").arg(format.uMachine, 0, 16);
}

bool sameFormat(const CBinaryFormat &a, const CBinaryFormat &b)
{
    return a.eKind == b.eKind && a.nBits == b.nBits && a.uMachine == b.uMachine && a.bLibrary == b.bLibrary;
}

// The .cti files of a folder, in name order.
QStringList producerFiles(const QString &strLocal)
{
    QStringList listNames;
    const QDir folder(strLocal);
    for (const QString &strName : folder.entryList(QDir::Files | QDir::System | QDir::Hidden, QDir::Name)) {
        if (strName.endsWith(QLatin1String(".cti"), Qt::CaseInsensitive))
            listNames << strName;
    }
    return listNames;
}

void scanVariable(CGenTLDetectInfo &info, int nBits, const QString &strValue)
{
    const CBinaryFormat expected = GenTLProducers::expectedFormat(nBits);
    QStringList listSeen;
    QMap<QString, QStringList> foldersOf; // file name (folded when names ignore case) -> folders
    QStringList listOrder;
    for (const QString &strFolder : strValue.split(GenTLProducers::listSeparator(), Qt::SkipEmptyParts)) {
        const QString strLocal = GenTLProducers::localPath(strFolder.trimmed());
        // A folder named twice is one folder: its producers are not duplicates.
        const QString strCanonical = QFileInfo(strLocal).canonicalFilePath();
        const QString strKey = strCanonical.isEmpty() ? QDir::cleanPath(strLocal) : strCanonical;
        if (listSeen.contains(strKey, GenTLProducers::nameCase()))
            continue;
        listSeen << strKey;
        CGenTLFolder folder;
        folder.nBits = nBits;
        folder.strPath = strFolder.trimmed();
        folder.bExists = QFileInfo(strLocal).isDir();
        const QStringList listFiles = folder.bExists ? producerFiles(strLocal) : QStringList();
        folder.nProducers = listFiles.size();
        info.folders << folder;
        for (const QString &strName : listFiles) {
            CGenTLProducer producer;
            producer.nBits = nBits;
            producer.strFolder = folder.strPath;
            producer.strName = strName;
            QFile file(QDir(strLocal).filePath(strName));
            if (!QFileInfo(file.fileName()).isFile() || !file.open(QIODevice::ReadOnly)) {
                producer.eProblem = CGenTLProducer::Unreadable;
            } else {
                producer.format = GenTLProducers::readFormat(file.read(kHeaderBytes));
                if (producer.format.eKind != expected.eKind || !producer.format.bLibrary)
                    producer.eProblem = CGenTLProducer::NotLibrary;
                else if (!sameFormat(producer.format, expected))
                    producer.eProblem = CGenTLProducer::WrongFormat;
            }
            info.producers << producer;
            const QString strKeyName = GenTLProducers::nameCase() == Qt::CaseInsensitive ? strName.toLower() : strName;
            if (!foldersOf.contains(strKeyName))
                listOrder << strKeyName;
            foldersOf[strKeyName] << folder.strPath;
        }
    }
    for (const QString &strKeyName : listOrder) {
        if (foldersOf.value(strKeyName).size() < 2)
            continue;
        CGenTLDuplicate duplicate;
        duplicate.nBits = nBits;
        for (const CGenTLProducer &producer : info.producers) {
            if (producer.nBits == nBits && producer.strName.compare(strKeyName, GenTLProducers::nameCase()) == 0) {
                duplicate.strName = producer.strName;
                break;
            }
        }
        duplicate.folders = foldersOf.value(strKeyName);
        info.duplicates << duplicate;
    }
}

} // namespace

namespace GenTLProducers {

QString variableName(int nBits)
{
    return nBits == 32 ? QStringLiteral("GENICAM_GENTL32_PATH") : QStringLiteral("GENICAM_GENTL64_PATH");
}

CBinaryFormat readFormat(const QByteArray &header)
{
    if (header.startsWith("\x7f"
                          "ELF"))
        return readElf(header);
    if (header.startsWith("MZ"))
        return readPe(header);
    return CBinaryFormat();
}

QString describe(const CBinaryFormat &format)
{
    if (format.eKind == CBinaryFormat::Other)
        return QCoreApplication::translate("VxOneKeyResult", "not a program library");
    const QString strKind = format.eKind == CBinaryFormat::Elf ? QStringLiteral("ELF") : QStringLiteral("PE");
    if (!format.bLibrary)
        return QCoreApplication::translate("VxOneKeyResult", "%1-bit %2 program for %3, not a library")
            .arg(format.nBits)
            .arg(strKind, machineName(format));
    return QCoreApplication::translate("VxOneKeyResult", "%1-bit %2 library for %3")
        .arg(format.nBits)
        .arg(strKind, machineName(format));
}

void check(CGenTLDetectInfo &info)
{
    info.variables.clear();
    info.folders.clear();
    info.producers.clear();
    info.duplicates.clear();
    for (const int nBits : {64, 32}) {
        const QString strValue = variableValue(variableName(nBits));
        if (strValue.isNull())
            continue;
        info.variables.insert(nBits, strValue);
        scanVariable(info, nBits, strValue);
    }
    info.bNormal = isExceptional(info) ? 0 : 1;
}

bool isExceptional(const CGenTLDetectInfo &info)
{
    if (info.variables.value(64).trimmed().isEmpty() || !info.duplicates.isEmpty())
        return true;
    for (const CGenTLFolder &folder : info.folders) {
        if (!folder.bExists || folder.nProducers == 0)
            return true;
    }
    for (const CGenTLProducer &producer : info.producers) {
        if (producer.eProblem != CGenTLProducer::None)
            return true;
    }
    return false;
}

VxPlan plan(const CGenTLDetectInfo &)
{
    return VxPlan();
}

} // namespace GenTLProducers

QStringList genTLLines(const CGenTLDetectInfo &info)
{
    QStringList listLines;
    if (info.variables.value(64).trimmed().isEmpty())
        listLines << QCoreApplication::translate("VxOneKeyResult",
            "%1 is not set: 64-bit programs find no GenTL producer. Set it to the folders of the installed producers.")
                         .arg(GenTLProducers::variableName(64));
    for (const CGenTLFolder &folder : info.folders) {
        const QString strVariable = GenTLProducers::variableName(folder.nBits);
        if (!folder.bExists)
            listLines << QCoreApplication::translate(
                "VxOneKeyResult", "Folder %1 in %2 does not exist: remove it from %2 or install the producer there.")
                             .arg(folder.strPath, strVariable);
        else if (folder.nProducers == 0)
            listLines << QCoreApplication::translate("VxOneKeyResult",
                "Folder %1 in %2 holds no GenTL producer (.cti): remove it from %2 or install the producer there.")
                             .arg(folder.strPath, strVariable);
    }
    for (const CGenTLProducer &producer : info.producers) {
        const QString strPath = QDir(producer.strFolder).filePath(producer.strName);
        switch (producer.eProblem) {
        case CGenTLProducer::None:
            listLines << QCoreApplication::translate("VxOneKeyResult", "GenTL producer: %1 (%2).")
                             .arg(QDir::toNativeSeparators(strPath), GenTLProducers::describe(producer.format));
            break;
        case CGenTLProducer::Unreadable:
            listLines << QCoreApplication::translate("VxOneKeyResult", "%1 cannot be read: check its permissions.")
                             .arg(QDir::toNativeSeparators(strPath));
            break;
        case CGenTLProducer::NotLibrary:
            listLines << QCoreApplication::translate(
                "VxOneKeyResult", "%1 is %2: replace it with the producer's library.")
                             .arg(QDir::toNativeSeparators(strPath), GenTLProducers::describe(producer.format));
            break;
        case CGenTLProducer::WrongFormat:
            listLines << QCoreApplication::translate(
                "VxOneKeyResult", "%1 is a %2, but %3 needs a %4: install the matching producer.")
                             .arg(QDir::toNativeSeparators(strPath), GenTLProducers::describe(producer.format),
                                 GenTLProducers::variableName(producer.nBits),
                                 GenTLProducers::describe(GenTLProducers::expectedFormat(producer.nBits)));
            break;
        }
    }
    for (const CGenTLDuplicate &duplicate : info.duplicates)
        listLines << QCoreApplication::translate(
            "VxOneKeyResult", "GenTL producer %1 is in more than one folder of %2 (%3): keep one copy.")
                         .arg(duplicate.strName, GenTLProducers::variableName(duplicate.nBits),
                             duplicate.folders.join(QStringLiteral(", ")));
    return listLines;
}

QJsonObject genTLFacts(const CGenTLDetectInfo &info)
{
    QJsonObject facts;
    QJsonObject variables;
    for (auto it = info.variables.cbegin(); it != info.variables.cend(); ++it)
        variables.insert(GenTLProducers::variableName(it.key()), it.value());
    facts.insert(QStringLiteral("variables"), variables);
    QJsonArray folders;
    for (const CGenTLFolder &folder : info.folders) {
        folders.append(QJsonObject {{QStringLiteral("bits"), folder.nBits}, {QStringLiteral("path"), folder.strPath},
            {QStringLiteral("exists"), folder.bExists}, {QStringLiteral("producers"), folder.nProducers}});
    }
    facts.insert(QStringLiteral("folders"), folders);
    static const char *const kProblems[] = {"", "unreadable", "not-library", "wrong-format"};
    QJsonArray producers;
    for (const CGenTLProducer &producer : info.producers) {
        QJsonObject one {{QStringLiteral("bits"), producer.nBits}, {QStringLiteral("folder"), producer.strFolder},
            {QStringLiteral("name"), producer.strName},
            {QStringLiteral("format"),
                producer.format.eKind == CBinaryFormat::Elf      ? QStringLiteral("elf")
                    : producer.format.eKind == CBinaryFormat::Pe ? QStringLiteral("pe")
                                                                 : QStringLiteral("other")}};
        if (producer.format.eKind != CBinaryFormat::Other) {
            one.insert(QStringLiteral("formatBits"), producer.format.nBits);
            one.insert(QStringLiteral("machine"), producer.format.uMachine);
            one.insert(QStringLiteral("library"), producer.format.bLibrary);
        }
        if (producer.eProblem != CGenTLProducer::None)
            one.insert(QStringLiteral("problem"), QLatin1String(kProblems[producer.eProblem]));
        producers.append(one);
    }
    facts.insert(QStringLiteral("producers"), producers);
    QJsonArray duplicates;
    for (const CGenTLDuplicate &duplicate : info.duplicates)
        duplicates.append(
            QJsonObject {{QStringLiteral("bits"), duplicate.nBits}, {QStringLiteral("name"), duplicate.strName},
                {QStringLiteral("folders"), QJsonArray::fromStringList(duplicate.folders)}});
    facts.insert(QStringLiteral("duplicates"), duplicates);
    return facts;
}
