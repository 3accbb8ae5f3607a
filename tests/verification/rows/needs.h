// What a test of these needs, in the words of the plan: without it, the test is skipped and says why.
#pragma once

#include <gtest/gtest.h>

#include "tests/verification/computer.h"

#define NEEDS(word) \
    if (!zelt::verification::Offers().contains(word)) GTEST_SKIP() << zelt::verification::Reason(word)
