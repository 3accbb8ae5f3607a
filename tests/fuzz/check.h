// Checks for fuzzed programs. A failed check aborts the program, so that the fuzzer keeps the input.
#pragma once

#include <cstdio>
#include <cstdlib>

#define CHECK(condition)                                                                       \
    do {                                                                                       \
        if (!(condition)) {                                                                    \
            std::fprintf(stderr, "%s:%d: %s does not hold\n", __FILE__, __LINE__, #condition); \
            std::abort();                                                                      \
        }                                                                                      \
    } while (false)
