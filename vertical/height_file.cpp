#include "vertical/height_file.h"

#include <new>

#include "database/storage_files.h"
#include "platform/data/height_table_reader.h"
#include "platform/data/height_table_writer.h"
#include "platform/storage/crc32.h"
#include "platform/storage/stream.h"
#include "platform/ui/progress_display.h"
#include "platform/ui/progress_interface.h"
#include "platform/ui/texts.h"

namespace QvRefSystem {

namespace {

using QvPlatform::SystemText;
using QvPlatform::TextId;
using QvPlatform::TUserInterface;
using Table = QvCommonUtils::T2DTable<double>;

/// Runs the operation and tells the user where the storage failed. Memory may not suffice for a
/// large file; that ends as a refusal.
template <typename Operation>
bool Run(const std::string& path, bool useResource, TUserInterface& ui,
         const Operation& operation) {
  try {
    return operation();
  } catch (const QvPlatform::StorageError& error) {
    TellCannotCreate(path, useResource, ui, error.what());
  } catch (const std::bad_alloc&) {
    return false;
  }
  return false;
}

/// Whether the head of the text, whose digits are limited, leads back to the table's nodes.
bool KeepsItsNodes(const Table& table, std::string_view text) {
  HeightTableHeader header;
  return ReadHeightTableHeader(text, &header) && header.counts.x == table.CountX &&
         header.counts.y == table.CountY;
}

}  // namespace

bool MakeHeightText(const Table* table, std::string* text, TUserInterface& ui) {
  ProgressDisplay progress(ui, ProgressDisplay::kCounted, SystemText(TextId::kSavingHeights));
  return FormatHeightTable(table, text, kHeightHeaderFormat, kHeightValueFormat,
                           progress.Interface()) &&
         KeepsItsNodes(*table, *text);
}

bool SaveHeightTable(const Table* table, const std::string& path, bool useResource, unsigned* crc,
                     TUserInterface& ui) {
  return Run(path, useResource, ui, [&] {
    const auto stream = CreateStream(path, useResource);
    std::string text;
    if (!MakeHeightText(table, &text, ui)) return false;
    stream->Write(text.data(), text.size());
    stream->Commit();
    if (crc != nullptr) *crc = QvPlatform::Crc32(text);
    return true;
  });
}

bool LoadHeightTable(Table* table, const std::string& path, bool useResource, TUserInterface& ui) {
  std::string text;
  if (!LoadHeightText(path, useResource, &text, ui)) return false;
  ProgressDisplay progress(ui, ProgressDisplay::kCounted, SystemText(TextId::kLoadingHeights));
  return ParseHeightTable(table, text, progress.Interface());
}

bool LoadHeightText(const std::string& path, bool useResource, std::string* text,
                    TUserInterface& ui) {
  return Run(path, useResource, ui, [&] {
    *text = ReadStorageFile(path, useResource);
    return true;
  });
}

bool SaveHeightText(const std::string& path, bool useResource, std::string_view text,
                    TUserInterface& ui) {
  return Run(path, useResource, ui, [&] {
    WriteStorageFile(path, useResource, text);
    return true;
  });
}

}  // namespace QvRefSystem
