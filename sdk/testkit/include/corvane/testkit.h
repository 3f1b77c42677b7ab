// All of the test kit: a host for a plugin under test, and matchers for GoogleTest.
#pragma once

#include <corvane/testkit/Host.h>
#include <corvane/testkit/Matchers.h>
