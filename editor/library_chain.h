#pragma once

namespace QvRefSystem {

// The pair starts and stops the libraries that the editor depends on. It is called around all use
// of the editor, on the thread of the QApplication, and counts.
// NOLINTBEGIN(bugprone-reserved-identifier): the names under which hosts know the pair.
/// Starts the libraries, or only counts one start more. True on the first start only.
bool _QvGeoRefFrameEditor_Initialize();
/// Takes one start back, and stops the libraries with the last one. Without a start it does
/// nothing.
void _QvGeoRefFrameEditor_Finalize();
// NOLINTEND(bugprone-reserved-identifier)

}  // namespace QvRefSystem
