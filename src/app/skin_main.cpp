#include <cstdio>
#include <exception>

#include "base/file.h"
#include "remote/skin_check.h"

namespace {

int Check(const char* folder) {
    const auto findings = nqp::remote::CheckSkin(nqp::base::PathFromUtf8(folder));
    for (const std::string& finding : findings)
        std::puts(finding.c_str());
    if (findings.empty()) std::puts("The skin is whole.");
    return findings.empty() ? 0 : 1;
}

}  // namespace

// nqp_skin FOLDER: says what is missing or wrong in a skin's folder. Ends with 0 for a whole skin.
int main(int argc, char** argv) {
    if (argc != 2) {
        std::fputs("usage: nqp_skin FOLDER\n", stderr);
        return 2;
    }
    try {
        return Check(argv[1]);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "nqp_skin: %s\n", error.what());
        return 2;
    }
}
