#include "cli/QuilletCLIEntry.hpp"

int main(int argc, char** argv) { return quillet::QuilletCLIEntry::main(argc, argv); }
