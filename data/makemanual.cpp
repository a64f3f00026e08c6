// makemanual SOURCES DIRECTORY [CHAPTER...]: writes the help file, its twin for browsers and their pictures.
#include "base/runtimeerror.h"
#include "data/manual.h"

#include <cstdio>

int main(int count, char** arguments) {
    if (count < 3) {
        std::fputs("usage: makemanual SOURCES DIRECTORY [CHAPTER...]\n", stderr);
        return 2;
    }
    try {
        orv::writemanual(arguments[1], arguments[2], {arguments + 3, arguments + count});
    } catch (const orv::runtimeerror& error) {
        std::fprintf(stderr, "makemanual: %s\n", error.text.c_str());
        return 1;
    }
    return 0;
}
