#pragma once

#include "vxapply.h"

#include <QStringList>

// The helper verbs that make and undo journaled changes:
//
//   apply OPT ITEM KIND TARGET OLD NEW [ITEM KIND TARGET OLD NEW ...]
//       make the changes in order as optimisation OPT (a new id), each one
//       journaled before and after it is made
//   undo OPT [UNDONE]
//       restore optimisation UNDONE (default: the last one not yet undone)
//       as optimisation OPT, last change first
//
// Every change must pass VxApply::isValidChange() (the interfaces it names
// looked up in links, the system's unless a test hands in its own); one
// invalid change refuses the whole command before anything is touched.
namespace ChangeVerbs {

bool validateApply(const QStringList &listArgs, QString *pReason,
    const NetAdapters::LinkSource &links = NetAdapters::LinkSource::system());
bool validateUndo(const QStringList &listArgs, QString *pReason);

// The plan an apply command line carries (validateApply first).
VxPlan planOf(const QStringList &listArgs);

// Validate, open the journal, check the ids against it and run; the exit
// status of HelperVerbs (done: every change done or unchanged).
int runApply(const QStringList &listArgs, const VxAppliers &appliers, VxJournal &journal,
    const VxApply::StageHook &hook = VxApply::StageHook(),
    const NetAdapters::LinkSource &links = NetAdapters::LinkSource::system());
int runUndo(const QStringList &listArgs, const VxAppliers &appliers, VxJournal &journal,
    const VxApply::StageHook &hook = VxApply::StageHook(),
    const NetAdapters::LinkSource &links = NetAdapters::LinkSource::system());

} // namespace ChangeVerbs
