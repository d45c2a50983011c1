#pragma once

#include <string>

#include "platform/ui/progress_interface.h"
#include "vertical/table_raster.h"

namespace QvCommonUtils {

/// Saves the image, every `subsample`th pixel of it (below 1 counts as 1), as an uncompressed
/// bitmap file of 256 colours in the colour palette. It is read and written in stripes of 128 rows;
/// `progress`, which may be null, counts them. False, and no file is left, if it cannot be written
/// or is cancelled.
[[nodiscard]] bool SaveBitmapFile(const TTableDibData<double>& raster, int subsample,
                                  const std::string& path,
                                  QvRefSystem::TProgressInterface* progress);

}  // namespace QvCommonUtils
