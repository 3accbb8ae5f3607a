// The simulator's use of one component of any kind: gives the component the simulator's context, initialises it, and asks for
// its identification and parameters. Owns references to it; a derived class calls Terminate to end the use.
#pragma once

#include <cape-open.h>
#include <wrl/client.h>

#include <memory>
#include <vector>

#include "samples/simulator/flowsheet.h"
#include "samples/simulator/report.h"

namespace zelt::sample {

// The interface of an object; null if there is no object or it lacks the interface.
template <class I>
Microsoft::WRL::ComPtr<I> Optional(IUnknown* object)
{
    Microsoft::WRL::ComPtr<I> result;
    if (!object || FAILED(object->QueryInterface(IID_PPV_ARGS(&result)))) result.Reset();
    return result;
}

// A flowsheet whose components' messages go to the report, which must outlive it.
std::shared_ptr<Flowsheet> MakeFlowsheet(Report& report);

class ComponentSession {
public:
    ComponentSession(Microsoft::WRL::ComPtr<IDispatch> object, std::shared_ptr<Flowsheet> flowsheet);
    ComponentSession(const ComponentSession&) = delete;
    ComponentSession& operator=(const ComponentSession&) = delete;

    void ShowIdentity(Report& report, const char* label) const;
    // Calls WalkParameters if the component has parameters. With `hold`, keeps the collection, the first parameter and its
    // specification until ReleaseHeld.
    void ShowParameters(Report& report, bool hold);

    Microsoft::WRL::ComPtr<IDispatch> package;
    Microsoft::WRL::ComPtr<ICapeIdentification> identification;  // this and utilities may be null
    Microsoft::WRL::ComPtr<ICapeUtilities> utilities;
    std::shared_ptr<Flowsheet> flowsheet;

protected:
    ~ComponentSession() = default;

    // Terminates the component and releases the session's references to it.
    void Terminate();
    // Releases what was held longer than the component.
    void ReleaseHeld() { held.clear(); }

private:
    std::vector<Microsoft::WRL::ComPtr<IDispatch>> held;
};

}  // namespace zelt::sample
