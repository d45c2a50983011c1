# Runs a fuzz target from its seeds, always along the same path, so that a failure is one of the
# change at hand.
#   cmake -DPROGRAM=<fuzz target> -DSEEDS=<folder> -DFINDS=<folder> -P run_fuzz.cmake
file(GLOB seeds ${SEEDS}/*)
if(NOT seeds)
  message(FATAL_ERROR "there are no seeds in ${SEEDS}")
endif()
file(REMOVE_RECURSE ${FINDS})
file(MAKE_DIRECTORY ${FINDS})
execute_process(
  COMMAND ${PROGRAM} -seed=1 -runs=20000 -max_total_time=10 -max_len=2048 -print_final_stats=1
          -artifact_prefix=${FINDS}/ ${FINDS} ${SEEDS}
  COMMAND_ERROR_IS_FATAL ANY)
