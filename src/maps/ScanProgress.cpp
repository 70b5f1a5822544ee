#include "maps/ScanProgress.h"

#include "shell/AppContext.h"

namespace steward {

ScanProgress& scanProgress(AppContext& app)
{
    static SilentScanProgress silent;
    return app.scanProgress ? *app.scanProgress : silent;
}

} // namespace steward
