# Tests of the programs, and of the database that one of them makes.

refframe_tests(
  cli_tests
  FOLDERS apps/cli
  LINKS refframe_commands refframe_test_support)
target_compile_definitions(cli_tests PRIVATE REFFRAME_PROGRAM="$<TARGET_FILE:refframe_cli>")
add_dependencies(cli_tests refframe_cli)

# The delivered database in both forms, made anew and found sound.
foreach(form IN ITEMS delivered delivered.qvdb)
  add_test(
    NAME make_${form}
    COMMAND ${CMAKE_COMMAND} -DPROGRAM=$<TARGET_FILE:refframe_cli>
            -DDATABASE=${PROJECT_BINARY_DIR}/${form} -P
            ${CMAKE_CURRENT_SOURCE_DIR}/road/make_delivered.cmake)
  set_tests_properties(make_${form} PROPERTIES FIXTURES_SETUP delivered_database TIMEOUT 600)
endforeach()

# The walk over all records takes its time, so two halves of it run beside each other.
refframe_tests(
  road_tests
  FOLDERS road
  LINKS refframe_commands refframe_test_support PROJ::proj)
add_test(NAME road_tests_other_half COMMAND road_tests)
set_tests_properties(road_tests PROPERTIES ENVIRONMENT "GTEST_SHARD_INDEX=0")
set_tests_properties(road_tests_other_half PROPERTIES ENVIRONMENT "GTEST_SHARD_INDEX=1")
set_property(
  TEST road_tests road_tests_other_half
  APPEND
  PROPERTY ENVIRONMENT "GTEST_TOTAL_SHARDS=2" "REFFRAME_DELIVERED=${PROJECT_BINARY_DIR}/delivered")
set_tests_properties(road_tests road_tests_other_half
                     PROPERTIES FIXTURES_REQUIRED delivered_database TIMEOUT 600)
