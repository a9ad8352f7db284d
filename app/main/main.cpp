// konu: the local text console of the host.
#include "app/Console.h"

int main(int argc, char** argv) { return Konu::ConsoleMain(argc, argv); }
