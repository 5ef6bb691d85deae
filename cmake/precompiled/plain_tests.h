#pragma once

#include <gmock/gmock.h>

#include "standard.h"
