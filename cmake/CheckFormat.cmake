# Fails if a source file is not as clang-format would write it.
#   cmake -DCLANG_FORMAT=<program> -DROOT=<source tree> -P CheckFormat.cmake
set(sources)
foreach(folder apps assembly bench database dialogs editor forms fuzz platform processors registry tests
               vertical)
  file(GLOB_RECURSE folder_sources ${ROOT}/${folder}/*.h ${ROOT}/${folder}/*.cpp)
  list(APPEND sources ${folder_sources})
endforeach()
execute_process(COMMAND ${CLANG_FORMAT} --dry-run -Werror ${sources} RESULT_VARIABLE result)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "these files are not formatted: run clang-format -i on them")
endif()
