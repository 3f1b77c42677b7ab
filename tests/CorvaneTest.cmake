# corvane_test(NAME program LEVEL label SOURCES source... [LIBRARIES library...]
#              [DEFINITIONS definition...] [DEPENDS target...] [TIMEOUT seconds] [WHOLE]
#              [PROPERTIES name value...])
# Builds a GoogleTest program. Each of its tests becomes a test of ctest with the given label, time
# limit (60 s by default) and properties. With WHOLE, the program becomes a single test. Tests
# ignore the machine's settings file. DEPENDS names the targets that the program starts or loads.
function(corvane_test)
  cmake_parse_arguments(PARSE_ARGV 0 TEST "WHOLE" "NAME;LEVEL;TIMEOUT"
    "SOURCES;LIBRARIES;DEFINITIONS;DEPENDS;PROPERTIES")
  if(NOT TEST_TIMEOUT)
    set(TEST_TIMEOUT 60)
  endif()
  add_executable(${TEST_NAME} ${TEST_SOURCES})
  target_link_libraries(${TEST_NAME} PRIVATE ${TEST_LIBRARIES} GTest::gmock_main)
  target_compile_definitions(${TEST_NAME} PRIVATE ${TEST_DEFINITIONS})
  if(TEST_DEPENDS)
    add_dependencies(${TEST_NAME} ${TEST_DEPENDS})
  endif()
  set(properties LABELS ${TEST_LEVEL} TIMEOUT ${TEST_TIMEOUT} ${TEST_PROPERTIES}
    ENVIRONMENT "CORVANE_PLATFORM_CONF=/dev/null")
  if(TEST_WHOLE)
    add_test(NAME ${TEST_NAME} COMMAND ${TEST_NAME})
    set_tests_properties(${TEST_NAME} PROPERTIES ${properties})
  else()
    gtest_discover_tests(${TEST_NAME} NO_PRETTY_VALUES DISCOVERY_TIMEOUT 60
      PROPERTIES ${properties})
  endif()
endfunction()
