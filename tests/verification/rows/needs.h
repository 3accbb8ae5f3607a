// What a test of these needs: without it, the test is skipped and says so.
#pragma once

#include <gtest/gtest.h>

#include "tests/system/harness/own_scope.h"
#include "tests/system/harness/under_wine.h"

#define NEEDS_WINDOWS() \
    if (zelt::test::UnderWine()) GTEST_SKIP() << "cannot be seen under Wine"

// A user without administrator's rights, and the opposite.
#define NEEDS_A_PLAIN_USER() \
    if (zelt::test::OwnScope() == zelt::Scope::Machine) GTEST_SKIP() << "needs a user without administrator's rights"
#define NEEDS_AN_ADMINISTRATOR() \
    if (zelt::test::OwnScope() == zelt::Scope::User) GTEST_SKIP() << "needs administrator's rights"
