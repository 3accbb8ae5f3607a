// Skips a test, with the reason, if the computer lacks what the test needs. The words are those of plan.txt.
#pragma once

#include <gtest/gtest.h>

#include "tests/verification/computer.h"

#define NEEDS(word) \
    if (!zelt::verification::Offers().contains(word)) GTEST_SKIP() << zelt::verification::Reason(word)
