#pragma once

#include "netadapters.h"
#include "vxrepair.h"

#include <QString>
#include <QStringList>

// The closed set of changes vetrix-helper makes with system rights. Each
// verb checks its own arguments; anything it does not expect is refused
// before the machine is touched.
//
//   set-env NAME VALUE [NAME VALUE ...]  write SDK variables into /etc/environment
//   set-mtu IFACE MTU                    set an interface's MTU
//   remove-sdk-file PATH [PATH ...]      delete stray SDK libraries found by the check
//   run-installer gige|usb3              start the SDK's driver install script
//   apply OPT ITEM KIND TARGET OLD NEW ...  make journaled changes (changeverbs.h)
//   undo OPT [UNDONE]                    restore a journaled optimisation
namespace HelperVerbs {

// The exit codes the program maps back to a repair status.
using Exit = VxPrivileged::HelperExit;
using VxPrivileged::ExitDone;
using VxPrivileged::ExitFailed;
using VxPrivileged::ExitRefused;

// Checks a command line (verb first); an interface it names must be one
// links lists (the program passes the system's, tests their own). On
// refusal *pReason says why.
bool validate(const QStringList &listArgs, QString *pReason = nullptr,
    const NetAdapters::LinkSource &links = NetAdapters::LinkSource::system());

// Validates and performs; returns the exit status. run-installer starts the
// script detached and returns whether it started.
int run(const QStringList &listArgs, const NetAdapters::LinkSource &links = NetAdapters::LinkSource::system());

} // namespace HelperVerbs
