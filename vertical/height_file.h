#pragma once

#include <string>
#include <string_view>

#include "platform/data/height_table.h"
#include "platform/ui/user_interface.h"

/// Height tables at rest: a text in a plain file, or in a resource of a container where
/// `useResource` says so. `path` is the stream's whole name, such as HeightStoragePath gives.
///
/// A stream that cannot be opened, read or written is told to the user with its path; all failures
/// are results, and nothing is raised.
namespace QvRefSystem {

/// Writes a table with a progress display, all or nothing: what stood under the path stands until
/// the whole text is on the disk. `crc`, which may be null, takes the CRC-32 of the text as zlib
/// computes it, and is unchanged on failure.
///
/// False without a message if the user cancels, or for a table that could not be read back, since
/// it has no nodes, numbers that are not finite, or cells too small for the digits of the text.
[[nodiscard]] bool SaveHeightTable(const QvCommonUtils::T2DTable<double>* table,
                                   const std::string& path, bool useResource, unsigned* crc,
                                   QvPlatform::TUserInterface& ui);

/// The text that SaveHeightTable writes, made with the same progress display. False as there, and
/// `text` is in any state.
[[nodiscard]] bool MakeHeightText(const QvCommonUtils::T2DTable<double>* table, std::string* text,
                                  QvPlatform::TUserInterface& ui);

/// Reads a table with a progress display; what it takes for a table, ParseHeightTable says. False,
/// with the table in any state, without a message if the text is none or the user cancels.
[[nodiscard]] bool LoadHeightTable(QvCommonUtils::T2DTable<double>* table, const std::string& path,
                                   bool useResource, QvPlatform::TUserInterface& ui);

/// Reads the text alone, as it goes into trees; nobody looks into it. An empty one cannot be
/// loaded. `text` is unchanged on failure.
[[nodiscard]] bool LoadHeightText(const std::string& path, bool useResource, std::string* text,
                                  QvPlatform::TUserInterface& ui);
/// Writes a text as it is, all or nothing, without a progress display.
[[nodiscard]] bool SaveHeightText(const std::string& path, bool useResource, std::string_view text,
                                  QvPlatform::TUserInterface& ui);

}  // namespace QvRefSystem
