#include "vxrepaircli.h"

#include <QCoreApplication>

// On Windows the program runs elevated and repairs in its window only.
int VxRepairCli::run(bool, const Printer &, const Printer &printErr)
{
    printErr(QCoreApplication::translate("VxCheck", "Repairs from the command line are available on Linux only."));
    return 2;
}
