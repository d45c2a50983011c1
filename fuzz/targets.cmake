# The fuzz targets. Each is the source <name>_fuzz.cpp with its seeds under corpus/<name>; what it
# runs must be among the fuzzed sources of CMakeLists.txt.
set(fuzz_targets height_text transform tree_text tree_xml)
