#pragma once
// A window host that records what start-up and the restart ask of the windows.
#include "model/ServerProfile.h"
#include "commands/Startup.h"

#include <functional>
#include <memory>
#include <vector>

namespace steward::testing {

class RecordingHost : public WindowHost {
public:
    ServerProfile* loadMainWindow() override
    {
        profiles.push_back(std::make_unique<ServerProfile>());
        return profiles.back().get();
    }
    void showMainWindow() override {}
    void unloadMainWindow() override {}
    void closeAllForms() override
    {
        ++closes;
        if (onClose)
            onClose();
    }
    void unloadScanner() override {}
    void minimizeMainWindow() override {}

    int closes = 0;
    /// Runs when all windows are closed: the first thing a restart does.
    std::function<void()> onClose;
    std::vector<std::unique_ptr<ServerProfile>> profiles;
};

} // namespace steward::testing
