#pragma once
// arena-stewardctl: the program without a window. Reads its arguments (the program's
// name first), runs one subcommand and gives the exit code.
#include <QStringList>

namespace steward {

struct CtlSystem;

int runCtl(const QStringList& arguments, CtlSystem& system);

} // namespace steward
