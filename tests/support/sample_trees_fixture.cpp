#include <algorithm>

#include "platform/storage/crc32.h"
#include "platform/storage/stream.h"
#include "tests/support/sample_trees.h"

namespace refframe_tests {

namespace {

void Unit(TreeBuilder tree, const char* code, const char* type, const char* b, const char* c,
          const char* name, const char* abbreviation) {
  tree.Field(5301, code).Field(5312, type).Field(5310, b).Field(5311, c);
  tree.Field(5320, name).Field(5321, abbreviation).Field(5322, "a unit");
}

}  // namespace

void MetreTree(TreeBuilder tree) {
  Unit(tree, "9001", "1", "1", "1", "metre", "m");
  tree.Field(102002, "9001").Field(101002, "m");
}

void DegreeTree(TreeBuilder tree) {
  Unit(tree, "9102", "2", "3.141592653589793", "180", "degree", "deg");
  tree.Field(102003, "9102");
}

void SecondTree(TreeBuilder tree) {
  Unit(tree, "9104", "2", "3.141592653589793", "648000", "arc-second", "sec");
}

void UnityTree(TreeBuilder tree) {
  Unit(tree, "9201", "3", "1", "1", "unity", "1");
}

void EllipsoidTree(TreeBuilder tree) {
  tree.Field(5120, "Clarke 1866").Field(5121, "An ellipsoid");
  tree.Field(5110, "6378206.4").Field(5111, "6356583.8").Field(5112, "0");
  tree.Field(5114, "0").Field(5115, "0");
  MetreTree(tree.Sub(5113));
  tree.Field(102004, "7008").Field(101004, "7");
}

void PrimeMeridianTree(TreeBuilder tree) {
  tree.Field(5220, "Greenwich").Field(5221, "The zero meridian").Field(5210, "0");
  DegreeTree(tree.Sub(5211));
  tree.Field(102009, "8901");
}

void TranslationTree(TreeBuilder tree) {
  tree.Field(5420, "NAD27 to WGS 84").Field(5421, "Mean of the states").Field(5422, "NAD");
  tree.Field(5461, "-8").Field(5462, "160").Field(5463, "176");
  MetreTree(tree.Sub(5440));
  tree.Sub(5443).Field(5701, "1").Field(5702, "translation").Field(5703, "three parameters");
}

void PositionVectorTree(TreeBuilder tree) {
  tree.Field(5420, "OSGB to WGS 84").Field(5421, "Seven parameters").Field(5422, "");
  tree.Field(5461, "446.448").Field(5462, "-125.157").Field(5463, "542.06");
  tree.Field(5464, "0.15").Field(5465, "0.247").Field(5466, "0.842").Field(5467, "-20.489");
  tree.Sub(5443).Field(5701, "2").Field(5702, "position vector").Field(5703, "seven parameters");
  MetreTree(tree.Sub(5440));
  SecondTree(tree.Sub(5441));
  UnityTree(tree.Sub(5442));
}

void DatumTree(TreeBuilder tree) {
  tree.Field(5620, "North American Datum 1927").Field(5621, "A datum").Field(5622, "NAD27");
  tree.Field(102006, "6267").Field(101003, "62");
  TranslationTree(tree.Sub(1102));
  EllipsoidTree(tree.Sub(5610));
}

void ProjectionTree(TreeBuilder tree) {
  tree.Field(6001, "9807").Field(6020, "UTM zone 17N").Field(6021, "A projection");
  tree.Field(6022, "E", 0).Field(6022, "N", 1).Field(6023, "East", 0).Field(6023, "North", 1);
  tree.Field(6024, "1", 0).Field(6024, "1", 1).Field(6025, "0");
  tree.Field(8801, "0").Field(8802, "-81").Field(8805, "0.9996");
  tree.Field(8806, "500000").Field(8807, "0");
  MetreTree(tree.Sub(6091));
  DegreeTree(tree.Sub(6090));
  UnityTree(tree.Sub(6092));
  tree.Field(102007, "16017");
}

const std::string& HeightText() {
  static const std::string kText =
      "54 55 36 38 1 1\n20.125\t20.250\t20.375\t\n19.500\t-19.625\t19.750\t\n";
  return kText;
}

int HeightCrc() {
  return static_cast<int>(QvPlatform::Crc32(HeightText()));
}

void HeightTableTree(TreeBuilder tree) {
  std::string line = HeightText();
  std::ranges::replace(line, '\t', ' ');
  std::ranges::replace(line, '\n', ' ');
  tree.Field(1502, "Alps").Field(1503, "A table").Field(1504, "ALP").Field(1501, "1");
  tree.Field(1512, std::to_string(HeightCrc())).Field(1511, line);
  tree.Field(1515, "55").Field(1516, "38").Field(1517, "54").Field(1518, "36");
  tree.Field(1519, "1").Field(1520, "1");
}

void HeightOffsetTree(TreeBuilder tree) {
  tree.Field(1502, "Harbour").Field(1503, "An offset").Field(1504, "HBR").Field(1501, "2");
  tree.Field(1513, "-2.33");
  MetreTree(tree.Sub(1514));
}

void SystemGeoidTree(TreeBuilder tree) {
  tree.Field(1502, "EGM96 height").Field(1503, "SystemGeoid; Code=5773");
  tree.Field(1504, "EGM96 height").Field(1501, "3").Field(1521, "5773");
}

void SystemTree(TreeBuilder tree, int kind) {
  static const char* const kNames[] = {"Site grid",      "Local sphere",    "NAD27 geocentric",
                                       "NAD27 geodetic", "NAD27 / UTM 17N", "Antenna site"};
  tree.Field(1020, kNames[kind - 1]).Field(1021, "A system").Field(1022, "SYS");
  tree.Field(1100, std::to_string(kind));
  for (int axis = 0; axis < 3; ++axis)
    tree.Field(1025, std::string(1, "XYZ"[axis]), axis);
  const bool hasSwap = kind == 1 || kind == 2 || kind == 6;
  if (hasSwap) tree.Field(1400, "1");
  if (kind != 4) MetreTree(tree.Sub(1104));
  if (kind == 2) {
    tree.Field(1120, "10.5", 0).Field(1120, "20.5", 1);
    EllipsoidTree(tree.Sub(1103));
  }
  if (kind >= 3 && kind <= 5) {
    PrimeMeridianTree(tree.Sub(1101));
    DatumTree(tree.Sub(1107));
    tree.Field(102005, std::to_string(26700 + kind));
  }
  if (kind == 4) {
    DegreeTree(tree.Sub(1106));
    MetreTree(tree.Sub(1201).Sub(1104));
  }
  if (kind == 5) ProjectionTree(tree.Sub(1300));
  if (kind == 5 || kind == 6) SystemTree(tree.Sub(1121), 4);
  if (kind == 6) {
    for (int axis = 0; axis < 3; ++axis)
      tree.Field(1120, std::to_string(axis) + ".25", axis);
    tree.Field(1122, "30");
  }
}

}  // namespace refframe_tests
