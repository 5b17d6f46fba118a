/* Preloaded into the program by the single-instance test: every bind() of a
 * local (AF_UNIX) socket waits 300 ms first. That widens the moment between
 * a start's "is anybody listening?" and its own listening socket, so two
 * starts at the same instant really do meet there. */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <sys/socket.h>
#include <time.h>

int bind(int nFd, const struct sockaddr *pAddr, socklen_t nLength)
{
    static int (*pRealBind)(int, const struct sockaddr *, socklen_t);
    if (!pRealBind)
        pRealBind = (int (*)(int, const struct sockaddr *, socklen_t))dlsym(RTLD_NEXT, "bind");
    if (pAddr && pAddr->sa_family == AF_UNIX) {
        const struct timespec pause = {0, 300000000L};
        nanosleep(&pause, 0);
    }
    return pRealBind(nFd, pAddr, nLength);
}
