// Memory from GlobalMemoryStatusEx; CPU from the PDH processor counter, one
// raw sample per cycle from a query opened and closed each time. Windows 10
// and later report "% Processor Utility", which can pass 100 and is clamped.
#include "resourcesampler.h"

#include <windows.h>
#include <pdh.h>

struct VxResourceSampler::Private
{
    bool bUseUtilityCounter = false;
    PDH_RAW_COUNTER previous = {};
};

VxResourceSampler::VxResourceSampler()
    : d(new Private)
{
    using RtlGetNtVersionNumbersFn = void(WINAPI *)(DWORD *, DWORD *, DWORD *);
    if (HMODULE hNtdll = LoadLibraryW(L"ntdll.dll")) {
        auto pGetVersion =
            reinterpret_cast<RtlGetNtVersionNumbersFn>(
                reinterpret_cast<void (*)()>(GetProcAddress(hNtdll, "RtlGetNtVersionNumbers")));
        if (pGetVersion) {
            DWORD uMajor = 0, uMinor = 0, uBuild = 0;
            pGetVersion(&uMajor, &uMinor, &uBuild);
            d->bUseUtilityCounter = uMajor >= 10;
        }
    }
}

VxResourceSampler::~VxResourceSampler()
{
    delete d;
}

float VxResourceSampler::memoryLoad()
{
    MEMORYSTATUSEX status = {};
    status.dwLength = 64;
    if (!GlobalMemoryStatusEx(&status) || status.ullTotalPhys == 0)
        return 0.0f;
    return float((1.0 - double(status.ullAvailPhys) / double(status.ullTotalPhys)) * 100.0);
}

float VxResourceSampler::cpuLoad()
{
    PDH_HQUERY hQuery = nullptr;
    PDH_HCOUNTER hCounter = nullptr;
    PdhOpenQueryW(nullptr, 0, &hQuery);
    PdhAddCounterW(hQuery,
                   d->bUseUtilityCounter ? L"\\Processor Information(_Total)\\% Processor Utility"
                                         : L"\\Processor Information(_Total)\\% Processor Time",
                   0, &hCounter);
    PdhCollectQueryData(hQuery);
    PDH_RAW_COUNTER current = {};
    PdhGetRawCounterValue(hCounter, nullptr, &current);

    float fLoad = 0.0f;
    if (m_bFirstCpuSample) {
        m_bFirstCpuSample = false;
    } else {
        PDH_FMT_COUNTERVALUE value = {};
        PdhCalculateCounterFromRawValue(hCounter, PDH_FMT_DOUBLE, &current, &d->previous, &value);
        fLoad = float(value.doubleValue);
        if (fLoad > 100.0f)
            fLoad = 100.0f;
    }
    d->previous = current;
    PdhCloseQuery(hQuery);
    return fLoad;
}
