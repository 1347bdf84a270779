# orvane_test(NAME [QT | QTCORE] [SHARDS number] [MAIN file] LINK targets... SOURCES files...): the
# test program NAME_tests. With QT there is a QApplication around its cases, and windows are drawn
# offscreen, unless MAIN sees to both itself. With QTCORE there is an event loop and nothing to see,
# and no library that could show anything.
# Each main function makes folders in place of the user's, so that nothing is left in those.
# The cases run in one process, or in as many as SHARDS tells, each of which takes every so many of
# them: starting a program takes longer than most of its cases do, and one that takes long is not to
# be waited for by an idle core.
# The tests of the rooms that need nothing but the compiler are written without matchers, since
# those come in a package of their own.
function(orvane_test name)
  cmake_parse_arguments(PARSE_ARGV 1 TEST "QT;QTCORE" "MAIN;SHARDS" "LINK;SOURCES")
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
  if(NOT TEST_SHARDS)
    set(TEST_SHARDS 1)
  endif()
  set(leaks "suppressions=${CMAKE_SOURCE_DIR}/tests/leaks_of_others.txt:print_suppressions=0")
  foreach(number RANGE 1 ${TEST_SHARDS})
    math(EXPR index "${number} - 1")
    add_test(NAME ${name}.${number} COMMAND ${name}_tests)
    set_tests_properties(${name}.${number} PROPERTIES TIMEOUT 900 ENVIRONMENT
      "QT_QPA_PLATFORM=offscreen;LSAN_OPTIONS=${leaks};GTEST_TOTAL_SHARDS=${TEST_SHARDS};GTEST_SHARD_INDEX=${index}")
  endforeach()
endfunction()
