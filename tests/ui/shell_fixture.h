// What every test of the shell starts from.
#pragma once

#include <gtest/gtest.h>

#include "shell.h"

namespace orlix::test {

class ShellTest : public ::testing::Test, protected Shell {};

}  // namespace orlix::test
