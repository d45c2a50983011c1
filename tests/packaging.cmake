# What is delivered beside the libraries: the installed package as a host uses it, and the form of
# the sources.

set(installed ${PROJECT_BINARY_DIR}/installed)
add_test(NAME install COMMAND ${CMAKE_COMMAND} --install ${PROJECT_BINARY_DIR} --prefix
                              ${installed})
set_tests_properties(install PROPERTIES FIXTURES_SETUP installed TIMEOUT 120)

# The consumer links what the sanitizers were compiled into, so it needs their run time as well.
set(consumer_flags)
if(REFFRAME_SANITIZE)
  set(consumer_flags -fsanitize=address,undefined)
endif()
set(consumers core_consumer)
if(REFFRAME_GUI)
  list(APPEND consumers editor_consumer)
endif()
foreach(consumer IN LISTS consumers)
  add_test(
    NAME ${consumer}
    COMMAND
      ${CMAKE_CTEST_COMMAND} --build-and-test ${CMAKE_CURRENT_SOURCE_DIR}/consumer
      ${PROJECT_BINARY_DIR}/consumer_of_${consumer} --build-generator ${CMAKE_GENERATOR}
      --build-target ${consumer} --build-options -DCMAKE_PREFIX_PATH=${installed}
      -DCMAKE_CXX_COMPILER=${CMAKE_CXX_COMPILER} -DCMAKE_CXX_FLAGS=${consumer_flags}
      -DCMAKE_EXE_LINKER_FLAGS=${CMAKE_EXE_LINKER_FLAGS} --test-command ${consumer})
  set_tests_properties(${consumer} PROPERTIES FIXTURES_REQUIRED installed TIMEOUT 300)
endforeach()

find_program(CLANG_FORMAT clang-format)
if(CLANG_FORMAT)
  add_test(NAME format COMMAND ${CMAKE_COMMAND} -DCLANG_FORMAT=${CLANG_FORMAT} -DROOT=${PROJECT_SOURCE_DIR}
                               -P ${PROJECT_SOURCE_DIR}/cmake/CheckFormat.cmake)
endif()
find_package(Python3 COMPONENTS Interpreter)
if(Python3_FOUND)
  add_test(NAME layers COMMAND ${Python3_EXECUTABLE} -B ${CMAKE_CURRENT_SOURCE_DIR}/layers.py
                               ${PROJECT_SOURCE_DIR})
endif()
