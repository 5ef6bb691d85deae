#pragma once

#include <gmock/gmock.h>

#include "widgets.h"
