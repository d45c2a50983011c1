# Every room includes only rooms below it, and nothing up to the core includes Qt.
#   cmake -DROOT=<source folder> -P layers.cmake

# Rooms from the ground up. Rooms of one line may include each other only as far as they stand in
# this order from left to right.
set(rooms
    platform/text
    platform/ui
    platform/storage
    platform/dbset
    platform/xini
    platform/ctui
    processors/string_tree
    vertical/height_table
    platform/geocore
    database
    processors
    vertical
    processors/processor_set
    registry
    platform/widgets
    dialogs
    editor
    apps)
list(FIND rooms registry highest_without_qt)

# The room of a path: the longest one that begins it.
function(room_of path out)
  set(found "")
  foreach(room IN LISTS rooms)
    string(FIND "${path}" "${room}" at)
    if(at EQUAL 0)
      string(LENGTH "${room}" length)
      string(LENGTH "${found}" known)
      if(length GREATER known)
        set(found ${room})
      endif()
    endif()
  endforeach()
  set(${out} "${found}" PARENT_SCOPE)
endfunction()

file(GLOB_RECURSE sources RELATIVE ${ROOT} ${ROOT}/platform/*.h ${ROOT}/platform/*.cpp
     ${ROOT}/database/*.h ${ROOT}/database/*.cpp ${ROOT}/processors/*.h ${ROOT}/processors/*.cpp
     ${ROOT}/vertical/*.h ${ROOT}/vertical/*.cpp
     ${ROOT}/registry/*.h ${ROOT}/registry/*.cpp ${ROOT}/dialogs/*.h ${ROOT}/dialogs/*.cpp
     ${ROOT}/editor/*.h ${ROOT}/editor/*.cpp)
set(faults "")
set(checked 0)
foreach(source IN LISTS sources)
  room_of(${source} room)
  list(FIND rooms "${room}" level)
  file(STRINGS ${ROOT}/${source} includes REGEX "^#include ")
  foreach(include IN LISTS includes)
    if(include MATCHES "\"([^\"]+)\"")
      room_of(${CMAKE_MATCH_1} other)
      list(FIND rooms "${other}" other_level)
      if(other_level GREATER level)
        string(APPEND faults "${source} includes ${CMAKE_MATCH_1}, which stands above it\n")
      endif()
      math(EXPR checked "${checked} + 1")
    elseif(include MATCHES "<(Q[A-Z][^>]*)>" AND NOT level GREATER highest_without_qt)
      string(APPEND faults "${source} includes ${CMAKE_MATCH_1}\n")
    endif()
  endforeach()
endforeach()
if(checked LESS 100)
  message(FATAL_ERROR "only ${checked} includes were found below ${ROOT}")
endif()
if(faults)
  message(FATAL_ERROR "${faults}")
endif()
message(STATUS "${checked} includes keep to their floors")
