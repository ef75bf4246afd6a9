#include <cstdio>

#include "base/file.h"
#include "core/first_folder.h"

// nqp_folder FOLDER: puts the files that a program folder starts with into it.
int main(int argc, char** argv) {
    if (argc != 2) {
        std::fputs("usage: nqp_folder FOLDER\n", stderr);
        return 2;
    }
    if (!nqp::core::FillFirstFolder(nqp::base::PathFromUtf8(argv[1]))) {
        std::fprintf(stderr, "nqp_folder: cannot write into %s\n", argv[1]);
        return 1;
    }
    return 0;
}
