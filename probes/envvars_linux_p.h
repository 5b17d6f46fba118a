#pragma once

#include "atomicfile.h"
#include "envvars.h"

// Linux internals of the environment repair, open to the tests.
namespace EnvVars {
namespace Detail {

// The write of the machine-wide environment file (/etc/environment) whose
// atomic replacement goes with options; writeMachineEnvironment() is the
// one with the default options. Tests stop the write before its rename.
MachineWriter fileWriter(const AtomicFile::Options &options);

} // namespace Detail
} // namespace EnvVars
