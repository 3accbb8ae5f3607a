// For tests in which a server is killed or fails, and so ends without revoking its classes.
#pragma once

#include "under_wine.h"

namespace zelt::test {

// Windows forgets the classes of a server that ends. Wine's service RpcSs continues to hand them out until it is stopped. This
// function stops it, so that the next client does not get the class of a dead server, and waits for its end. False if the
// service does not stop within a minute.
inline bool DeadServersAreForgotten()
{
    if (!UnderWine()) return true;
    const SC_HANDLE services = OpenSCManagerW(nullptr, nullptr, SC_MANAGER_CONNECT);
    const SC_HANDLE service = OpenServiceW(services, L"RpcSs", SERVICE_STOP | SERVICE_QUERY_STATUS);
    SERVICE_STATUS status = {};
    ControlService(service, SERVICE_CONTROL_STOP, &status);
    for (int waited = 0; waited < 60'000; waited += 50) {
        if (!QueryServiceStatus(service, &status) || status.dwCurrentState == SERVICE_STOPPED) break;
        Sleep(50);
    }
    CloseServiceHandle(service);
    CloseServiceHandle(services);
    return status.dwCurrentState == SERVICE_STOPPED;
}

}  // namespace zelt::test
