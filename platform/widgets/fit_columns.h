#pragma once

class QTableWidget;

namespace QvPlatform {

/// Gives each column of a grid the width of its widest cell, title included, and two blanks; an
/// empty one has none. The last column takes what is left, if that is more. Where `leastLast` is
/// not 0, the columns ahead of it leave it at least that width, in pixels, and are cut.
void FitColumns(QTableWidget& grid, int leastLast = 0);

}  // namespace QvPlatform
