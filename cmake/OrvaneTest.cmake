# orvane_test(NAME [QT | QTCORE] [WHOLE] [MAIN file] LINK targets... SOURCES files...
# [RESOURCES locks...] [TIMEOUT seconds]): the test program NAME_tests, its cases found when the
# tests run. With QT there is a QApplication around them, and windows are drawn offscreen, unless
# MAIN sees to both itself.
# With QTCORE there is an event loop and nothing to see, and no library that could show anything.
# Each main function makes folders in place of the user's, so that nothing is left in those.
# With WHOLE its cases run in one process, because what they share takes long to make.
# The tests of the rooms that need nothing but the compiler are written without matchers, since
# those come in a package of their own.
function(orvane_test name)
  cmake_parse_arguments(PARSE_ARGV 1 TEST "QT;QTCORE;WHOLE" "MAIN;TIMEOUT" "LINK;SOURCES;RESOURCES")
  add_executable(${name}_tests ${TEST_SOURCES})
  target_include_directories(${name}_tests PRIVATE ${CMAKE_SOURCE_DIR} ${CMAKE_SOURCE_DIR}/src)
  if(TEST_QT)
    if(NOT TEST_MAIN)
      set(TEST_MAIN ${CMAKE_SOURCE_DIR}/tests/qt_main.cpp)
    endif()
    target_sources(${name}_tests PRIVATE ${TEST_MAIN})
    target_link_libraries(${name}_tests PRIVATE ${TEST_LINK} Qt6::Widgets Qt6::Test GTest::gmock)
  elseif(TEST_QTCORE)
    target_sources(${name}_tests PRIVATE ${CMAKE_SOURCE_DIR}/tests/qt_core_main.cpp)
    target_link_libraries(${name}_tests PRIVATE ${TEST_LINK} Qt6::Core Qt6::Test GTest::gmock)
  else()
    target_sources(${name}_tests PRIVATE ${CMAKE_SOURCE_DIR}/tests/plain_main.cpp)
    if(ORVANE_CORE_ONLY)
      target_link_libraries(${name}_tests PRIVATE ${TEST_LINK} GTest::gtest)
    else()
      target_link_libraries(${name}_tests PRIVATE ${TEST_LINK} GTest::gmock)
    endif()
  endif()
  if(NOT TEST_TIMEOUT)
    set(TEST_TIMEOUT 300)
  endif()
  set(leaks "suppressions=${CMAKE_SOURCE_DIR}/tests/leaks_of_others.txt:print_suppressions=0")
  # The properties travel as one list, so that each can hold one variable only.
  set(properties TIMEOUT ${TEST_TIMEOUT} ENVIRONMENT "QT_QPA_PLATFORM=offscreen"
    ENVIRONMENT_MODIFICATION "LSAN_OPTIONS=set:${leaks}")
  if(TEST_RESOURCES)
    list(APPEND properties RESOURCE_LOCK "${TEST_RESOURCES}")
  endif()
  if(TEST_WHOLE)
    add_test(NAME ${name}.whole COMMAND ${name}_tests)
    set_tests_properties(${name}.whole PROPERTIES ${properties})
    return()
  endif()
  gtest_discover_tests(${name}_tests TEST_PREFIX "${name}." DISCOVERY_MODE PRE_TEST
    PROPERTIES ${properties})
endfunction()
