# Every fuzz target for a moment. They are built by clang, whatever builds the rest; without a clang
# that has libFuzzer the tests are reported as skipped.
include(ExternalProject)
include(${PROJECT_SOURCE_DIR}/fuzz/targets.cmake)

find_program(REFFRAME_CLANG NAMES clang++ clang++-19 clang++-18 clang++-17 clang++-16 clang++-15
                                  clang++-14)
if(REFFRAME_CLANG AND NOT DEFINED REFFRAME_CLANG_FUZZES)
  set(probe ${PROJECT_BINARY_DIR}/fuzz_probe)
  file(WRITE ${probe}.cpp
       "#include <cstddef>\n#include <cstdint>\n"
       "extern \"C\" int LLVMFuzzerTestOneInput(const std::uint8_t*, std::size_t) { return 0; }\n")
  execute_process(
    COMMAND ${REFFRAME_CLANG} -std=c++20 -fsanitize=fuzzer,address,undefined ${probe}.cpp -o ${probe}
    RESULT_VARIABLE failed OUTPUT_QUIET ERROR_QUIET)
  # Only a success is kept: what is missing may be installed before the next configuration.
  if(failed EQUAL 0)
    set(REFFRAME_CLANG_FUZZES ON CACHE INTERNAL "clang++ has libFuzzer")
  endif()
endif()

if(REFFRAME_CLANG_FUZZES)
  set(fuzz_binaries ${PROJECT_BINARY_DIR}/fuzz)
  set(fuzz_programs ${fuzz_targets})
  list(TRANSFORM fuzz_programs REPLACE "(.+)" "${fuzz_binaries}/\\1_fuzz")
  ExternalProject_Add(
    fuzz_programs
    SOURCE_DIR ${PROJECT_SOURCE_DIR}/fuzz
    BINARY_DIR ${fuzz_binaries}
    CMAKE_ARGS -DCMAKE_CXX_COMPILER=${REFFRAME_CLANG} -DCMAKE_BUILD_TYPE=
    CMAKE_CACHE_ARGS "-DCMAKE_CXX_COMPILER_LAUNCHER:STRING=${CMAKE_CXX_COMPILER_LAUNCHER}"
    BUILD_ALWAYS ON
    BUILD_BYPRODUCTS ${fuzz_programs}
    USES_TERMINAL_BUILD ON
    INSTALL_COMMAND "")
else()
  message(STATUS "No clang++ with libFuzzer was found: the fuzz targets are skipped")
endif()

foreach(target IN LISTS fuzz_targets)
  if(REFFRAME_CLANG_FUZZES)
    add_test(
      NAME fuzz_${target}
      COMMAND
        ${CMAKE_COMMAND} -DPROGRAM=${fuzz_binaries}/${target}_fuzz
        -DSEEDS=${PROJECT_SOURCE_DIR}/fuzz/corpus/${target}
        -DFINDS=${PROJECT_BINARY_DIR}/fuzz_finds/${target} -P
        ${CMAKE_CURRENT_SOURCE_DIR}/run_fuzz.cmake)
    set_tests_properties(fuzz_${target} PROPERTIES TIMEOUT 120)
  else()
    add_test(NAME fuzz_${target} COMMAND ${CMAKE_COMMAND} -E echo "skipped: no clang++ with libFuzzer")
    set_tests_properties(fuzz_${target} PROPERTIES SKIP_REGULAR_EXPRESSION "skipped")
  endif()
endforeach()
