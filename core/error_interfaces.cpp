#include "core/error_interfaces.h"

namespace zelt {

ErrorInterfaces::ErrorInterfaces(CapeOpenBase& proxy)
    : root(proxy),
      user(proxy),
      badArgument(proxy),
      badCOParameter(proxy),
      badInvOrder(proxy),
      boundaries(proxy),
      persistenceNotFound(proxy),
      unknown(proxy),
      data(proxy),
      licenceError(proxy),
      invalidArgument(proxy),
      outOfBounds(proxy),
      implementation(proxy),
      noImpl(proxy),
      limitedImpl(proxy),
      computation(proxy),
      outOfResources(proxy),
      noMemory(proxy),
      timeOut(proxy),
      failedInitialisation(proxy),
      solvingError(proxy),
      invalidOperation(proxy),
      persistence(proxy),
      illegalAccess(proxy),
      persistenceSystemError(proxy),
      persistenceOverflow(proxy),
      thrmPropertyNotAvailable(proxy)
{}

}  // namespace zelt
