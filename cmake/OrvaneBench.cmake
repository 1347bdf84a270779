# orvane_bench(NAME LINK targets... SOURCES files...): the program bench_NAME, which prints what it
# measured next to the raw call measured in the same run.
function(orvane_bench name)
  cmake_parse_arguments(PARSE_ARGV 1 BENCH "" "" "LINK;SOURCES")
  add_executable(bench_${name} ${BENCH_SOURCES})
  target_include_directories(bench_${name} PRIVATE ${CMAKE_SOURCE_DIR} ${CMAKE_SOURCE_DIR}/src)
  target_link_libraries(bench_${name} PRIVATE ${BENCH_LINK})
endfunction()
