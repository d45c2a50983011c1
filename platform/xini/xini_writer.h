#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "platform/storage/stream.h"
#include "platform/xini/xini.h"

namespace QvPlatform {

/// Operations give false, and write nothing, when sections nest too deep, when there is no section
/// to leave, and after the document is finished.
class TQvXIniWriter {
 public:
  /// Writes to `stream`, which stays the caller's to commit; Finish writes the document. The
  /// encoding is 0, UTF-8, and there are no options yet: other values throw std::invalid_argument.
  explicit TQvXIniWriter(TQvStream* stream, int encoding = 0, int options = 0);
  /// Keeps the document for TakeDocument.
  TQvXIniWriter();
  ~TQvXIniWriter();
  TQvXIniWriter(const TQvXIniWriter&) = delete;
  TQvXIniWriter& operator=(const TQvXIniWriter&) = delete;

  /// Says whether what follows is written without line breaks.
  void SetCompact(bool compact);
  /// Begins a section. An empty name makes an unnamed member, here and below.
  [[nodiscard]] bool EnterSection(std::string_view name);
  /// Leaves the innermost section.
  [[nodiscard]] bool ExitSection();
  /// Writes an item with a decimal number.
  [[nodiscard]] bool WriteInt(std::string_view name, int value);
  /// Writes an item with any bytes.
  [[nodiscard]] bool WriteString(std::string_view name, std::string_view value);
  /// Closes what is open and writes the whole document to the stream. Throws StorageError.
  void Finish();
  /// Closes what is open and gives the document.
  [[nodiscard]] std::string TakeDocument();

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace QvPlatform
