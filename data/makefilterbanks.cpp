// makefilterbanks DIRECTORY: writes the two filter bank files of the data directory.
#include "base/runtimeerror.h"
#include "data/filterbankdesign.h"

#include <cstdio>

int main(int count, char** arguments) {
    if (count != 2) {
        std::fputs("usage: makefilterbanks DIRECTORY\n", stderr);
        return 2;
    }
    try {
        orv::writefilterbanks(arguments[1]);
    } catch (const orv::runtimeerror& error) {
        std::fprintf(stderr, "makefilterbanks: %s\n", error.text.c_str());
        return 1;
    }
    return 0;
}
