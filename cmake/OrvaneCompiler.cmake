# How everything is compiled: one standard, warnings as errors, nothing exported by accident.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
# What was compiled before, here or in another folder, is taken from a compiler cache where there is
# one; nothing asks for it.
find_program(ORVANE_CCACHE ccache)
mark_as_advanced(ORVANE_CCACHE)
if(ORVANE_CCACHE AND NOT DEFINED CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${ORVANE_CCACHE})
endif()
if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
  set(CMAKE_BUILD_TYPE Release CACHE STRING "" FORCE)
endif()

# Programs land in bin/, components in lib/, whatever folder builds them.
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/lib)

add_compile_options(-Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion
                    -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-align -Wunused
                    $<$<BOOL:${ORVANE_STRICT}>:-Werror>
                    $<IF:$<CXX_COMPILER_ID:GNU>,-Wshadow=local,-Wshadow>)
# Optimized, this version of the compiler takes joined texts for overlapping copies: its mistake.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  add_compile_options($<$<CONFIG:Release>:-Wno-restrict>)
endif()
if(ORVANE_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all
                      -fno-omit-frame-pointer)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # Under the sanitizers this warning sees variants that were never filled; the builds without
    # them keep it.
    add_compile_options(-Wno-maybe-uninitialized)
  endif()
  add_link_options(-fsanitize=address,undefined)
endif()
if(ORVANE_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=all
                      -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()
if(ORVANE_COVERAGE)
  add_compile_options(--coverage)
  add_link_options(--coverage)
endif()
