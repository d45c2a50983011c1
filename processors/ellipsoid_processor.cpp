#include "processors/ellipsoid_processor.h"

#include "platform/text/text.h"

namespace QvRefSystem {

bool TQvRfEllipsoidDataProcessor::ReadContent(TStringTree* tree, RecordImage* image) {
  // The flattening is needed only where it tells the shape, and read ahead of the unit, so that a
  // tree without it adds none.
  int useFlattening = 0;
  double flattening = 0;
  if (!GetInteger(*tree, TreeIds::kEllipsoidUseF, &useFlattening)) return false;
  if (useFlattening != 0 && !GetDouble(*tree, TreeIds::kEllipsoidF, &flattening)) return false;
  image->SetDouble(Column("F"), flattening);
  return TQvRfDataProcessor::ReadContent(tree, image);
}

bool TQvRfEllipsoidDataProcessor::IsEqualBeside(const RecordImage& image,
                                                QvPlatform::RowView row) const {
  const int sphere = Column("SPHEROID");
  const int useFlattening = Column("USE_F");
  const int flattening = Column("F");
  const int minorAxis = Column("B");
  if (image.Integer(sphere) != 0) return row.GetInteger(sphere) != 0;
  if (image.Integer(useFlattening) != 0) {
    return row.GetInteger(useFlattening) != 0 &&
           row.GetFloat(flattening) == image.Double(flattening);
  }
  return row.GetText(minorAxis) == image.Text(minorAxis);
}

std::string TQvRfEllipsoidDataProcessor::ComparableBeside(QvPlatform::RowView row) const {
  if (row.GetInteger(Column("SPHEROID")) != 0) return "sphere";
  return row.GetInteger(Column("USE_F")) != 0
             ? "f " + QvPlatform::DoubleToText(row.GetFloat(Column("F")))
             : "b " + row.GetText(Column("B"));
}

}  // namespace QvRefSystem
