# Warnings are errors in every target of ours; they travel on one INTERFACE target that is never
# installed.
add_library(refframe_warnings INTERFACE)
target_compile_options(
  refframe_warnings
  INTERFACE -Wall
            -Wextra
            -Wpedantic
            -Wshadow
            -Wnon-virtual-dtor
            -Wcast-align
            -Woverloaded-virtual
            -Wold-style-cast
            -Wconversion
            -Wno-sign-conversion
            -Wdouble-promotion
            -Wformat=2
            -Werror)

# False alarms of g++ 12 when it inlines the standard library: on "literal" + string, and on variants
# that hold a string.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  target_compile_options(refframe_warnings INTERFACE -Wno-restrict -Wno-maybe-uninitialized)
endif()

option(REFFRAME_SANITIZE "Build with AddressSanitizer and UndefinedBehaviorSanitizer" OFF)
if(REFFRAME_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()
