// Arena Steward: the program starts in its start-up routine with no window open.
#include "ui/Application.h"

int main(int argc, char** argv) { return steward::runApplication(argc, argv); }
