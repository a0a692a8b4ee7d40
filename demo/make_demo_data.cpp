// Writes the demo program folder: vantrel-demo-data DIR
#include "demo/demo_units.h"

#include <cstdio>

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: vantrel-demo-data DIR\n");
        return 2;
    }
    int n = vantrel::demo::WriteDemoProgramFolder(argv[1]);
    std::printf("%d unit files written to %s/Units\n", n, argv[1]);
    return n > 0 ? 0 : 1;
}
