#include "commands/Upper.h"
