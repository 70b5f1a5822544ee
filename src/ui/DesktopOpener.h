#pragma once
// The desktop's "open" action. It lives with the windows because it needs Qt's GUI
// module, which the program without a window does not link.
#include "platform/System.h"

namespace steward {

/// Opens through QDesktopServices.
class DesktopOpener final : public Opener {
public:
    bool open(const QUrl& url) override;
};

} // namespace steward
