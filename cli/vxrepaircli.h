#pragma once

#include "vxchange.h"

#include <QCommandLineOption>
#include <QList>
#include <QStringList>

#include <functional>

struct VxChangeResult;

// vetrix-check's repairs: --repair[=IDS] plans the repairs of the items
// given (default: all that have one) and makes the changes, --dry-run only
// shows the plan, --undo[=N] restores the last optimisation (or the N-th of
// the journal, or the one with that id), --journal lists the journal. Every
// change goes through the journal, so each one can be undone. The repairs
// themselves exist on Linux (vxrepaircli_linux.cpp); elsewhere run() says so.
class VxRepairCli
{
public:
    using Printer = std::function<void(const QString &)>;

    // Takes the repair options out of a command line (QCommandLineParser has
    // no options with optional values) and returns the rest.
    QStringList takeOptions(const QStringList &listArgs);
    // The options as they appear in --help.
    static QList<QCommandLineOption> helpOptions();

    // Whether any repair option was given.
    bool isActive() const { return m_bRepair || m_bUndo || m_bJournal || m_bDryRun; }
    // Why the options given cannot be run; empty when they can.
    QString usageError() const;

    // Runs the options given; returns vetrix-check's exit status (0: done or
    // nothing to do, 1: a change failed or, in a dry run, changes are
    // planned, 2: usage).
    int run(bool bJson, const Printer &printOut, const Printer &printErr);

private:
    // The items whose repairs make planned changes here.
    static const QList<quint32> &repairableItems();
    VxPlan plannedRepairs() const;
    int runRepair(bool bJson, const Printer &printOut);
    int runUndo(bool bJson, const Printer &printOut, const Printer &printErr);
    int runJournal(bool bJson, const Printer &printOut);
    int report(bool bJson, const QString &strOpt, const QString &strUndoes, const VxPlan &plan,
        const QVector<VxChangeResult> &vecResults, const Printer &printOut);

    bool m_bRepair = false;
    bool m_bUndo = false;
    bool m_bJournal = false;
    bool m_bDryRun = false;
    QString m_strRepairIds; // after --repair=
    QString m_strUndo; // after --undo=
    QString m_strError; // an option this class could not read
};
