// Starts and stops the editor's libraries, as a host does around everything else.
#include "editor/georef_frame_editor.h"

int main() {
  const bool first = QvRefSystem::_QvGeoRefFrameEditor_Initialize();
  QvRefSystem::_QvGeoRefFrameEditor_Finalize();
  return first ? 0 : 1;
}
