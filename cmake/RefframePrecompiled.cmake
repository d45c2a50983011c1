# The headers of others that most sources of a target read, compiled once for all of them. Sources
# still include what they use: the lint and the release preset compile each of them alone, the latter
# because g++ 12 then tells its false alarms about the standard library from real ones.
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
