# The headers of others that most sources of a target read, compiled once for all of them. Sources
# still include what they use: the lint compiles each of them alone.
option(REFFRAME_PRECOMPILE "Compile the headers of the standard library and of Qt once a target" ON)

#   refframe_precompile(<target> [<header>...])
function(refframe_precompile target)
  if(NOT REFFRAME_PRECOMPILE)
    return()
  endif()
  target_precompile_headers(
    ${target}
    PRIVATE
    <algorithm>
    <array>
    <charconv>
    <cmath>
    <filesystem>
    <functional>
    <map>
    <memory>
    <optional>
    <set>
    <span>
    <string>
    <string_view>
    <utility>
    <variant>
    <vector>
    ${ARGN})
endfunction()
