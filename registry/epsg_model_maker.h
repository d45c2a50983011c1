#pragma once

#include <map>
#include <string>
#include <vector>

#include "platform/geocore/system_model.h"
#include "registry/datum_shift_choice.h"
#include "registry/proj_database.h"

namespace QvRefSystem {

/// Makes the models of the registry's objects. Numbers become the shortest text that reads back the
/// same, in the registry's own units, but for sexagesimal notation, which becomes decimal degrees.
///
/// A 2D and a 3D geographic system of one datum and one name are one system; it has the 2D code.
/// Geographic systems of the registry in the order longitude, latitude are given latitude first.
class EpsgModelMaker {
 public:
  /// Keeps a reference to the data set.
  explicit EpsgModelMaker(const EpsgDataset& dataset);

  /// The maker over the data set of the installed PROJ, made on first use; null, and `error` set,
  /// if there is none.
  [[nodiscard]] static const EpsgModelMaker* Installed(std::string* error);

  /// The code under which a system stands: for a 3D system its 2D sibling's, if it has one.
  [[nodiscard]] int RecordCode(int systemCode) const;
  /// Codes of 3D systems that stand under the code of another one, by that one's code.
  [[nodiscard]] const std::map<int, int>& MergedSystems() const { return merged_; }
  /// All live systems that stand under their own code: geodetic ones first, each kind by code.
  [[nodiscard]] std::vector<int> SystemCodes() const;
  /// False, with `model` unchanged and `error` set, for a code that is no live projected,
  /// geographic or geocentric system, or one that the model cannot hold.
  [[nodiscard]] bool System(int code, SystemModel* model, std::string* error) const;
  /// The ellipsoid with its unit, its shape as the registry gives it, and its MIF code.
  [[nodiscard]] EllipsoidModel Ellipsoid(const EpsgEllipsoid& ellipsoid) const;
  /// The prime meridian in its own unit; one in sexagesimal notation comes in degrees.
  [[nodiscard]] PrimeMeridianModel PrimeMeridian(const EpsgPrimeMeridian& meridian) const;
  /// The datum with its ellipsoid and the shift that was chosen for it.
  [[nodiscard]] DatumModel Datum(const EpsgDatum& datum) const;
  /// The choice for every live datum, by its code.
  [[nodiscard]] const std::map<int, DatumShiftChoice>& DatumShifts() const { return shifts_; }
  /// The data set that the maker was given.
  [[nodiscard]] const EpsgDataset& Dataset() const { return dataset_; }

 private:
  [[nodiscard]] SystemModel Geodetic(const EpsgGeodeticSystem& system) const;
  [[nodiscard]] SystemModel Projected(const EpsgProjectedSystem& system) const;
  [[nodiscard]] ProjectionModel Projection(const EpsgConversion& conversion,
                                           const std::vector<EpsgAxis>& axes) const;
  [[nodiscard]] std::string ShortDatumName(int datum) const;

  const EpsgDataset& dataset_;
  std::map<int, DatumShiftChoice> shifts_;
  /// 2D code by 3D code, and the other way round.
  std::map<int, int> siblings_;
  std::map<int, int> merged_;
};

}  // namespace QvRefSystem
