#include "platform/desktop/program.h"

int main(int argc, char** argv) { return tavlo::platform::desktop::Program(argc, argv).Run(); }
