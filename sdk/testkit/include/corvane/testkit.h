// The whole test kit: Host, which runs a plugin under test, and matchers for GoogleTest.
#pragma once

#include <corvane/testkit/Host.h>
#include <corvane/testkit/Matchers.h>
