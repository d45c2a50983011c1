# Makes the delivered database anew and has it checked.
#   cmake -DPROGRAM=<refframe> -DDATABASE=<folder or container> -P make_delivered.cmake
file(REMOVE_RECURSE ${DATABASE})
foreach(arguments IN ITEMS "init;${DATABASE};--list" "check;${DATABASE}")
  execute_process(COMMAND ${PROGRAM} ${arguments} RESULT_VARIABLE result)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "refframe ${arguments} failed: ${result}")
  endif()
endforeach()
