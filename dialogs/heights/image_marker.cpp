#include "dialogs/heights/image_marker.h"

namespace QvRefSystem {

void TMarker::MoveTo(const QPointF& position) {
  if (position == position_) return;
  position_ = position;
  emit OnMarkerMove();
}

}  // namespace QvRefSystem
