#pragma once
#include <QStringList>
namespace steward {
/// Builds the real seams, runs start-up and the event loop; returns the exit code.
int runApplication(int argc, char** argv);

/// The program's arguments (without its name) as the one text that start-up reads, with
/// "--profile NAME" (or "--profile=NAME") taken out into profile.
QString commandLineText(const QStringList& arguments, QString* profile);
} // namespace steward
