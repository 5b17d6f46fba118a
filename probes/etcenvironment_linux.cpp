#include "etcenvironment.h"

#include "atomicfile.h"
#include "luinterface.h"
#include "vxrepair.h"

#include <QFile>
#include <QRegularExpression>

namespace EtcEnvironment {

namespace {

struct Line
{
    QByteArray bytes;   // the whole line with its end
    int nValueStart = -1;
    int nValueEnd = -1; // before the line end
    QByteArray name;
};

// Splits the file into lines (each keeping its "\n" or "\r\n") and notes
// where an assignment's value lies.
QList<Line> parse(const QByteArray &content)
{
    QList<Line> listLines;
    int nPos = 0;
    while (nPos < content.size()) {
        int nEnd = content.indexOf('\n', nPos);
        nEnd = nEnd < 0 ? content.size() : nEnd + 1;
        Line line;
        line.bytes = content.mid(nPos, nEnd - nPos);
        nPos = nEnd;

        int nBodyEnd = line.bytes.size();
        if (nBodyEnd > 0 && line.bytes.at(nBodyEnd - 1) == '\n')
            --nBodyEnd;
        if (nBodyEnd > 0 && line.bytes.at(nBodyEnd - 1) == '\r')
            --nBodyEnd;
        int i = 0;
        while (i < nBodyEnd && (line.bytes.at(i) == ' ' || line.bytes.at(i) == '\t'))
            ++i;
        if (line.bytes.mid(i, 7) == "export " || line.bytes.mid(i, 7) == "export\t") {
            i += 7;
            while (i < nBodyEnd && (line.bytes.at(i) == ' ' || line.bytes.at(i) == '\t'))
                ++i;
        }
        const int nEq = line.bytes.indexOf('=', i);
        if (nEq > i && nEq < nBodyEnd && line.bytes.at(i) != '#') {
            line.name = line.bytes.mid(i, nEq - i);
            line.nValueStart = nEq + 1;
            line.nValueEnd = nBodyEnd;
        }
        listLines << line;
    }
    return listLines;
}

QByteArray unquoted(const QByteArray &value)
{
    if (value.size() >= 2 && (value.startsWith('"') || value.startsWith('\'')) && value.endsWith(value.at(0)))
        return value.mid(1, value.size() - 2);
    return value;
}

} // namespace

QString filePath()
{
    return LuInterface::sysPath(QStringLiteral("/etc/environment"));
}

bool isValidValue(const QString &strValue)
{
    for (const QChar c : strValue) {
        if (c == QLatin1Char('\n') || c == QLatin1Char('\r') || c.unicode() == 0 || c == QLatin1Char('"') || c == QLatin1Char('\''))
            return false;
    }
    return true;
}

bool isValidName(const QString &strName)
{
    static const QRegularExpression re(QStringLiteral("^[A-Za-z_][A-Za-z0-9_]*$"));
    return re.match(strName).hasMatch();
}

QString valueOf(const QByteArray &content, const QString &strName)
{
    const QByteArray name = strName.toLocal8Bit();
    QString strValue;
    for (const Line &line : parse(content)) {
        if (line.nValueStart >= 0 && line.name == name) {
            strValue = QString::fromLocal8Bit(unquoted(line.bytes.mid(line.nValueStart, line.nValueEnd - line.nValueStart)));
            if (strValue.isNull())
                strValue = QLatin1String(""); // set, to nothing
        }
    }
    return strValue;
}

QByteArray applied(const QByteArray &content, const Assignments &assignments)
{
    QList<Line> listLines = parse(content);
    QByteArray appended;
    for (const auto &assignment : assignments) {
        const QByteArray name = assignment.first.toLocal8Bit();
        const QByteArray value = assignment.second.toLocal8Bit();
        int nLast = -1;
        for (int i = 0; i < listLines.size(); ++i) {
            if (listLines.at(i).nValueStart >= 0 && listLines.at(i).name == name)
                nLast = i;
        }
        if (nLast < 0) {
            appended += name + "=\"" + value + "\"\n";
            continue;
        }
        Line &line = listLines[nLast];
        const QByteArray oldValue = line.bytes.mid(line.nValueStart, line.nValueEnd - line.nValueStart);
        QByteArray newValue = value;
        if (oldValue.size() >= 2 && (oldValue.startsWith('"') || oldValue.startsWith('\'')) && oldValue.endsWith(oldValue.at(0)))
            newValue = oldValue.at(0) + value + oldValue.at(0);
        else if (value.contains(' ') || value.contains('\t') || value.contains('#'))
            newValue = '"' + value + '"';
        line.bytes = line.bytes.left(line.nValueStart) + newValue + line.bytes.mid(line.nValueEnd);
        line.nValueEnd = line.nValueStart + newValue.size();
    }
    QByteArray result;
    for (const Line &line : listLines)
        result += line.bytes;
    if (!appended.isEmpty()) {
        if (!result.isEmpty() && !result.endsWith('\n'))
            result += '\n'; // the last line had no end; the new line must start on its own
        result += appended;
    }
    return result;
}

bool apply(const Assignments &assignments, const AtomicFile::Options &options)
{
    for (const auto &assignment : assignments) {
        if (!isValidName(assignment.first) || !isValidValue(assignment.second))
            return false;
    }
    const QString strPath = filePath();
    QByteArray content;
    QFile file(strPath);
    if (file.exists()) {
        if (!file.open(QIODevice::ReadOnly))
            return false;
        content = file.readAll();
        file.close();
    }
    const QByteArray newContent = applied(content, assignments);
    if (!AtomicFile::write(strPath, newContent, options))
        return false;
    for (const auto &assignment : assignments) {
        qCInfo(lcVxRepair).noquote() << strPath << assignment.first << "old:" << valueOf(content, assignment.first)
                                     << "new:" << assignment.second;
    }
    return true;
}

QByteArray removed(const QByteArray &content, const QString &strName)
{
    const QByteArray name = strName.toLocal8Bit();
    const QList<Line> listLines = parse(content);
    int nLast = -1;
    for (int i = 0; i < listLines.size(); ++i) {
        if (listLines.at(i).nValueStart >= 0 && listLines.at(i).name == name)
            nLast = i;
    }
    QByteArray result;
    for (int i = 0; i < listLines.size(); ++i) {
        if (i != nLast)
            result += listLines.at(i).bytes;
    }
    return result;
}

bool unset(const QString &strName)
{
    if (!isValidName(strName))
        return false;
    const QString strPath = filePath();
    QFile file(strPath);
    if (!file.exists())
        return true;
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const QByteArray content = file.readAll();
    file.close();
    if (valueOf(content, strName).isNull())
        return true;
    if (!AtomicFile::write(strPath, removed(content, strName)))
        return false;
    qCInfo(lcVxRepair).noquote() << strPath << strName << "old:" << valueOf(content, strName) << "new: (unset)";
    return true;
}

} // namespace EtcEnvironment
