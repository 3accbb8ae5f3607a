// The server-process reference: every Object (object.h) holds one, and the process (or the DLL) may end when none is left. A
// local server installs COM's own process-wide count at start; a DLL or a test keeps the plain counter defined here. This code
// does not know what happens when the count reaches zero: the installed functions do.
#pragma once

namespace com {

struct ServerReferenceFunctions {
    void (*add)();
    void (*release)();
};

// Replaces the counter. Call it before making the first object.
void SetServerReferenceFunctions(const ServerReferenceFunctions& functions);

void AddServerReference();
void ReleaseServerReference();

// References held through the default counter: what DllCanUnloadNow asks, and what tests assert.
long CountServerReferences();

// Holds one reference as long as it lives.
class ServerReference {
public:
    ServerReference() { AddServerReference(); }
    ~ServerReference() { ReleaseServerReference(); }
    ServerReference(const ServerReference&) = delete;
    ServerReference& operator=(const ServerReference&) = delete;
};

}  // namespace com
