#include "maps/ScanProgress.h"

#include "support/AppContext.h"

namespace steward {

ScanProgress& scanProgress(AppContext& app)
{
    static SilentScanProgress silent;
    return app.services.scanProgress ? *app.services.scanProgress : silent;
}

} // namespace steward
