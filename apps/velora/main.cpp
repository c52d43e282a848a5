#include "CommandLine.h"

int main(int argc, char** argv) { return velora::cli::RunCommandLine(argc, argv); }
