#pragma once
namespace steward {
/// Builds the real seams, runs start-up and the event loop; returns the exit code.
int runApplication(int argc, char** argv);
} // namespace steward
