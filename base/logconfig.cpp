#include "luinterface.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QLoggingCategory>
#include <QMap>
#include <QRecursiveMutex>
#include <QMutexLocker>
#include <QProcessEnvironment>
#include <QStandardPaths>
#include <QStringList>
#include <QThread>

#include <cstdio>
#include <memory>

// Logging set-up from a log4j-style properties file, mapped onto Qt logging:
//
//   log4j.rootLogger=LEVEL[, appender...]     default level of every category
//   log4j.logger.<category>=LEVEL             level of a category and its
//                                             children ("vx.probes" covers
//                                             "vx.probes.usb")
//   log4j.appender.<name>=<class>             *FileAppender classes write to
//   log4j.appender.<name>.File=<path>         the file (appended, folder
//                                             created); ConsoleAppender and
//                                             DebugAppender keep Qt's standard
//                                             output; other classes are skipped
//   log4j.appender.<name>.<other>=...         accepted and ignored
//
// Levels: ALL, TRACE, DEBUG, INFO, WARN, ERROR, FATAL, OFF (any case).
// Values may use placeholders: ${USERDATA} (LuInterface::userDataPath()),
// ${APPDIR} (the program's folder), ${HOME}, ${XDG_DATA_HOME} (default
// ~/.local/share) and any other ${NAME} from the environment (empty if unset).
// Lines starting with '#' or '!' are comments.
//
// The file is checked completely before anything changes: a missing file, an
// unknown level, a line without '=', no root logger, a file appender without
// a file or a log file that cannot be opened leave Qt's logging as it was and
// make initLog4qtConfig() return false.

namespace LuInterface {
namespace {

enum Level { LevelDebug, LevelInfo, LevelWarn, LevelError, LevelOff };

bool parseLevel(const QString &strText, Level &level)
{
    static const QHash<QString, Level> s_levels = {
        {QStringLiteral("ALL"), LevelDebug},  {QStringLiteral("TRACE"), LevelDebug},
        {QStringLiteral("DEBUG"), LevelDebug}, {QStringLiteral("INFO"), LevelInfo},
        {QStringLiteral("WARN"), LevelWarn},   {QStringLiteral("ERROR"), LevelError},
        {QStringLiteral("FATAL"), LevelError}, {QStringLiteral("OFF"), LevelOff}};
    const auto it = s_levels.constFind(strText.trimmed().toUpper());
    if (it == s_levels.constEnd())
        return false;
    level = it.value();
    return true;
}

// The four Qt filter rules for one category pattern at one level.
QString levelRules(const QString &strPattern, Level level)
{
    const auto onOff = [](bool bOn) { return bOn ? QStringLiteral("true") : QStringLiteral("false"); };
    return QStringLiteral("%1.debug=%2\n%1.info=%3\n%1.warning=%4\n%1.critical=%5\n")
        .arg(strPattern, onOff(level <= LevelDebug), onOff(level <= LevelInfo),
             onOff(level <= LevelWarn), onOff(level <= LevelError));
}

QString expandPlaceholders(const QString &strValue)
{
    const QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    QString strOut;
    int nPos = 0;
    while (nPos < strValue.size()) {
        const int nStart = strValue.indexOf(QLatin1String("${"), nPos);
        const int nEnd = nStart < 0 ? -1 : strValue.indexOf(QLatin1Char('}'), nStart + 2);
        if (nStart < 0 || nEnd < 0) {
            strOut += strValue.mid(nPos);
            break;
        }
        strOut += strValue.mid(nPos, nStart - nPos);
        const QString strName = strValue.mid(nStart + 2, nEnd - nStart - 2);
        if (strName == QLatin1String("USERDATA")) {
            strOut += userDataPath();
        } else if (strName == QLatin1String("APPDIR")) {
            strOut += QCoreApplication::applicationDirPath();
        } else if (strName == QLatin1String("XDG_DATA_HOME") && env.value(strName).isEmpty()) {
            strOut += QDir::homePath() + QStringLiteral("/.local/share");
        } else if (strName == QLatin1String("HOME") && env.value(strName).isEmpty()) {
            strOut += QDir::homePath();
        } else {
            strOut += env.value(strName);
        }
        nPos = nEnd + 1;
    }
    return strOut;
}

// The installed sink: the open log file and Qt's handler from before the
// first installation (used for console output).
struct Sink {
    // Recursive: a warning raised while writing re-enters the handler.
    QRecursiveMutex mutex;
    std::unique_ptr<QFile> pFile;
    bool bConsole = true;
    QtMessageHandler previous = nullptr;
    bool bInstalled = false;
};

// Never destroyed: Qt may still log from its own static destructors after
// main() returns, and the handler must not meet a destroyed sink then.
// Every line is flushed as it is written.
Sink &sink()
{
    static Sink *s_pSink = new Sink;
    return *s_pSink;
}

const char *typeName(QtMsgType type)
{
    switch (type) {
    case QtDebugMsg: return "DEBUG";
    case QtInfoMsg: return "INFO";
    case QtWarningMsg: return "WARN";
    case QtCriticalMsg: return "ERROR";
    case QtFatalMsg: return "FATAL";
    }
    return "?";
}

void messageHandler(QtMsgType type, const QMessageLogContext &context, const QString &strMessage)
{
    Sink &s = sink();
    QMutexLocker locker(&s.mutex);
    if (s.pFile) {
        const QByteArray line = QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd hh:mm:ss.zzz")).toUtf8()
            + " [" + typeName(type) + "] " + (context.category ? context.category : "default")
            + " - " + strMessage.toUtf8() + '\n';
        s.pFile->write(line);
        s.pFile->flush();
    }
    if (s.bConsole && s.previous)
        s.previous(type, context, strMessage);
    else if (s.bConsole)
        std::fprintf(stderr, "%s\n", qPrintable(qFormatLogMessage(type, context, strMessage)));
}

} // namespace

bool initLog4qtConfig(const QString &strFile)
{
    QFile file(strFile);
    if (!QFileInfo(strFile).isFile() || !file.open(QIODevice::ReadOnly | QIODevice::Text))
        return false;

    QMap<QString, QString> mapProps; // sorted: parents before children
    while (!file.atEnd()) {
        const QString strLine = QString::fromUtf8(file.readLine(65536)).trimmed();
        if (strLine.isEmpty() || strLine.startsWith(QLatin1Char('#')) || strLine.startsWith(QLatin1Char('!')))
            continue;
        const int nEq = strLine.indexOf(QLatin1Char('='));
        if (nEq <= 0)
            return false;
        mapProps.insert(strLine.left(nEq).trimmed(), strLine.mid(nEq + 1).trimmed());
    }

    // Root logger: level first, then the appender names.
    const QString strRootKey = QStringLiteral("log4j.rootLogger");
    if (!mapProps.contains(strRootKey))
        return false;
    QStringList listRoot = mapProps.value(strRootKey).split(QLatin1Char(','));
    Level rootLevel = LevelDebug;
    if (!parseLevel(listRoot.takeFirst(), rootLevel))
        return false;
    // Qt's own "qt.*" categories keep their debug and info output off unless
    // the file names them: at info level some of them (widget painting, for
    // one) write a line for every paint.
    QString strRules =
        levelRules(QStringLiteral("*"), rootLevel) + QStringLiteral("qt.*.debug=false\nqt.*.info=false\n");

    const QString strLoggerPrefix = QStringLiteral("log4j.logger.");
    for (auto it = mapProps.constBegin(); it != mapProps.constEnd(); ++it) {
        if (!it.key().startsWith(strLoggerPrefix))
            continue;
        const QString strCategory = it.key().mid(strLoggerPrefix.size());
        Level level = LevelDebug;
        // A category may name appenders after its level; output always goes
        // to the root's appenders here.
        if (strCategory.isEmpty() || !parseLevel(it.value().section(QLatin1Char(','), 0, 0), level))
            return false;
        strRules += levelRules(strCategory, level) + levelRules(strCategory + QStringLiteral(".*"), level);
    }

    QString strLogFile;
    bool bConsole = false;
    for (QString strAppender : listRoot) {
        strAppender = strAppender.trimmed();
        if (strAppender.isEmpty())
            continue;
        const QString strKey = QStringLiteral("log4j.appender.") + strAppender;
        const QString strClass = mapProps.value(strKey);
        if (strClass.endsWith(QLatin1String("FileAppender"))) {
            strLogFile = expandPlaceholders(mapProps.value(strKey + QStringLiteral(".File")));
            if (strLogFile.isEmpty())
                return false;
        } else if (strClass.endsWith(QLatin1String("ConsoleAppender"))
                   || strClass.endsWith(QLatin1String("DebugAppender"))) {
            bConsole = true;
        } else if (strClass.isEmpty()) {
            return false; // named by the root logger but never defined
        }
        // Other appender classes (syslog, telnet...) have no counterpart
        // here and are skipped.
    }

    std::unique_ptr<QFile> pLogFile;
    if (!strLogFile.isEmpty()) {
        const QFileInfo logInfo(strLogFile);
        if (!QDir().mkpath(logInfo.absolutePath()))
            return false;
        pLogFile = std::make_unique<QFile>(logInfo.absoluteFilePath());
        if (!pLogFile->open(QIODevice::WriteOnly | QIODevice::Append))
            return false;
    }

    QLoggingCategory::setFilterRules(strRules);
    Sink &s = sink();
    QMutexLocker locker(&s.mutex);
    s.pFile = std::move(pLogFile);
    s.bConsole = bConsole || !s.pFile;
    if (!s.bInstalled) {
        s.previous = qInstallMessageHandler(messageHandler);
        s.bInstalled = true;
    }
    return true;
}

} // namespace LuInterface
