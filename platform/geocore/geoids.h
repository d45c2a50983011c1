#pragma once

#include <map>
#include <string>

namespace QvRefSystem {

/// A geoid that this machine has: a vertical system of the EPSG registry whose undulations over a
/// geographic 3D system come from a grid that PROJ finds.
struct SystemGeoid {
  /// EPSG code of the vertical system (5773: EGM96 height).
  int code = 0;
  /// Name of the vertical system.
  std::string name;
  /// Name of the grid as PROJ takes it (`+grids=`); metres, bilinear.
  std::string grid;
  /// EPSG code of the geographic 3D system over which the grid's undulations count.
  int baseSystem = 0;
};

/// Null for a code that is no built-in geoid.
[[nodiscard]] const SystemGeoid* FindSystemGeoid(int code);

/// Name of a built-in geoid: one whose vertical system is in the EPSG registry and whose grid is
/// found on this machine. The code is that of the EPSG vertical system (5773: EGM96 height).
/// False, and `name` unchanged, for any other code.
[[nodiscard]] bool GetSystemGeoidName(int code, std::string* name);

/// All built-in geoids by code. The list is made once a process. False, and `list` empty, if there
/// is none.
[[nodiscard]] bool GetSystemGeoidsList(std::map<int, std::string>* list);

}  // namespace QvRefSystem
