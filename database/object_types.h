#pragma once

/// The one list of object types.
namespace QvRefSystem {

/// Codes of the object types; they equal the tags of their tables.
enum class TObjectType : signed char {
  kNone = 0,
  kReferenceSystem = 1,
  kDatum = 2,
  kEllipsoid = 3,
  kDatumShift = 4,
  kPrimeMeridian = 5,
  kMapProjection = 6,
  kDatumShiftType = 7,
  kLinearUnit = 8,
  kScaleUnit = 9,
  kAngularUnit = 10,
  kMapProjectionType = 11,
  kReferenceSystemType = 12,
  kVerticalReferenceSystem = 16
};

/// The codes of all object types lie below this number.
inline constexpr int kObjectTypeCodes = 17;

/// OWNER_CONTENT of the parameter values of map projections, in the place of an object type's code.
inline constexpr int kProjectionParameterOwner = 13;

/// Every object type by the stem that the names of its processor and its dialogs share, with its
/// code. Processors are made in this order and go in the opposite one.
#define REFFRAME_OBJECT_TYPES(X)         \
  X(DatumShift, kDatumShift)             \
  X(DatumShiftType, kDatumShiftType)     \
  X(Datum, kDatum)                       \
  X(LinearUnit, kLinearUnit)             \
  X(AngularUnit, kAngularUnit)           \
  X(ScaleUnit, kScaleUnit)               \
  X(MapProj, kMapProjection)             \
  X(MapProjType, kMapProjectionType)     \
  X(PrimeMeridian, kPrimeMeridian)       \
  X(Ellipsoid, kEllipsoid)               \
  X(RefSystemType, kReferenceSystemType) \
  X(RefSystem, kReferenceSystem)         \
  X(VerticalRefSystem, kVerticalReferenceSystem)

}  // namespace QvRefSystem
