#pragma once
// The fallback pictures of the preview, shipped inside the program.
#include <QString>

namespace steward {
class AppContext;

/// Writes unknown.jpg and unknown.bmp into the program's levelshots folder where they
/// are missing, creating the folder. False when one could not be written.
bool EnsureFallbackPictures(const AppContext& app);

/// The stem of a file name: everything before its last ".".
QString fileStem(const QString& name);

} // namespace steward
