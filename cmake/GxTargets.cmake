# How this project declares its targets, so that every folder's list file says only what is in it.

find_program(GX_CCACHE ccache)
if(GX_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${GX_CCACHE})
  if(GX_SANITIZE)
    # Without these two, ccache passes by every file that uses precompiled headers.
    list(PREPEND CMAKE_CXX_COMPILER_LAUNCHER
         ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros)
  endif()
endif()

# Carried by our own targets only; Qt's headers are system headers and stay silent.
add_library(gx_warnings INTERFACE)
target_compile_options(gx_warnings INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion
                       -Werror)

if(GX_SANITIZE)
  add_compile_options(-fsanitize=${GX_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${GX_SANITIZE})
endif()
# The released build compiles every file by itself and so finds a forgotten #include; the sanitized
# ones come after it and need only be quick: libraries several files at a time, tests with Qt's
# headers precompiled.
if(GX_SANITIZE AND NOT GX_FUZZ)
  set(CMAKE_UNITY_BUILD ON)
endif()
if(GX_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()

# gx_library(name SOURCES ... PUBLIC libs... PRIVATE libs...)
# A folder's library. Only its own folder is on the include path it hands on, so a target cannot
# include what it does not link.
function(gx_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;PUBLIC;PRIVATE" ${ARGN})
  add_library(${name} STATIC ${ARG_SOURCES})
  target_include_directories(${name} PUBLIC ${CMAKE_CURRENT_SOURCE_DIR})
  target_link_libraries(${name} PUBLIC ${ARG_PUBLIC} PRIVATE gx_warnings ${ARG_PRIVATE})
endfunction()

# gx_program(name SOURCES ... LIBS libs...)
function(gx_program name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LIBS" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE gx_warnings ${ARG_LIBS})
endfunction()

# Qt is not instrumented: what its own threads do with its own memory (Qt Test's watchdog, event
# dispatchers, the network threads) must not be reported. Our code and the headers compiled into it
# are instrumented and still are. Starting another program is no fork that goes on with its threads,
# though the sanitizer takes it for one.
set(gx_test_environment
  QT_QPA_PLATFORM=offscreen
  LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/support/lsan.supp
  UBSAN_OPTIONS=print_stacktrace=1
  "TSAN_OPTIONS=halt_on_error=1 ignore_noninstrumented_modules=1 die_after_fork=0")

# gx_test(name SOURCES ... LIBS libs... [TIMEOUT seconds] [LABELS ...] [RUNNER command...])
# One Qt Test program, run by CTest without a display and with settings of its own. A runner is a
# script that runs the program somewhere special; its exit status 77 says that it could not.
function(gx_test name)
  cmake_parse_arguments(ARG "" "TIMEOUT" "SOURCES;LIBS;LABELS;RUNNER" ${ARGN})
  if(NOT ARG_TIMEOUT)
    set(ARG_TIMEOUT 300)
  endif()
  gx_program(${name} SOURCES ${ARG_SOURCES} LIBS gx_test_support ${ARG_LIBS})
  if(GX_SANITIZE AND NOT GX_FUZZ)
    target_compile_options(${name} PRIVATE -fpch-preprocess)
    target_precompile_headers(${name} REUSE_FROM gx_test_headers)
  endif()
  add_test(NAME ${name} COMMAND ${ARG_RUNNER} $<TARGET_FILE:${name}>)
  set_tests_properties(${name} PROPERTIES SKIP_RETURN_CODE 77 TIMEOUT ${ARG_TIMEOUT} LABELS "${ARG_LABELS}"
    ENVIRONMENT "${gx_test_environment}")
endfunction()

# gx_fuzz(name SOURCES ... LIBS libs...)
# A fuzz target: with GX_FUZZ a libFuzzer program, otherwise a replay of its corpus
# (fuzz/corpus/<name>/) that runs as a test.
function(gx_fuzz name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LIBS" ${ARGN})
  set(corpus ${PROJECT_SOURCE_DIR}/fuzz/corpus/${name})
  if(GX_FUZZ)
    gx_program(fuzz_${name} SOURCES ${ARG_SOURCES} LIBS ${ARG_LIBS})
    target_link_options(fuzz_${name} PRIVATE -fsanitize=fuzzer)
  else()
    gx_program(fuzz_${name} SOURCES ${ARG_SOURCES} ${PROJECT_SOURCE_DIR}/fuzz/replay.cpp
               LIBS ${ARG_LIBS})
    add_test(NAME fuzz_${name} COMMAND fuzz_${name} ${corpus})
    set_tests_properties(fuzz_${name} PROPERTIES TIMEOUT 300 LABELS fuzz
      ENVIRONMENT "${gx_test_environment}")
  endif()
endfunction()

# gx_bench(name SOURCES ... LIBS libs...)
# A benchmark program; built with all but the sanitized rest so that it cannot rot, run by bench/run.
function(gx_bench name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LIBS" ${ARGN})
  gx_program(bench_${name} SOURCES ${ARG_SOURCES} LIBS ${ARG_LIBS} benchmark::benchmark)
endfunction()
