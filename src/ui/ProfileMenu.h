#pragma once
// The Profile menu of the main window (mnuProfile): New, Rename and Delete, and one
// checkable entry per profile (mnuProfile_<name>, the default's mnuProfile_default)
// that switches to it.
#include <QString>

#include <functional>

class QMenuBar;

namespace steward {

class ProfileSet;

/// What a chosen entry asks for: "new", "rename", "delete", or the name of a profile.
using ProfileChoice = std::function<void(const QString& choice)>;

void buildProfileMenu(QMenuBar* bar, const ProfileSet& profiles, const ProfileChoice& chosen);

} // namespace steward
