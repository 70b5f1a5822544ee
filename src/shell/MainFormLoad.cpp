#include "shell/MainFormLoad.h"

#include "shell/AppContext.h"

namespace steward {

void MainFormLoad(AppContext& app, ServerProfile& profile, FormLoadHost& host)
{
    Q_UNUSED(profile);
    app.formLoading = true;
    host.setRotationColumns({2205, 50, 0, 0});
    host.setSizeTwips(7490, 9600);
    host.centerForm();
    host.disableCloseMenu();
    app.formLoading = false;
}

} // namespace steward
