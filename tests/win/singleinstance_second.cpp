// A second start as the program makes it: runs the single-instance test and
// leaves with 0 when another instance holds the claim (as the program does),
// with 3 when it became the first instance itself. Prints which.
#include "singleinstance.h"

#include <cstdio>

int main()
{
    if (VxSingleInstance::anotherInstanceRuns()) {
        std::puts("another");
        return 0;
    }
    std::puts("first");
    VxSingleInstance::release();
    return 3;
}
