#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "apps/cli/terminal_interface.h"
#include "database/data_module.h"
#include "processors/data_processor.h"
#include "processors/object_descriptor.h"

namespace RefframeCli {

/// Whether the path names a container rather than a folder.
[[nodiscard]] bool IsContainer(std::string_view path);

/// The code of an "epsg:CODE"; false, with `code` unchanged, for any other text.
[[nodiscard]] bool EpsgCodeOf(std::string_view object, int* code);

/// A database that is open for one command.
class OpenedDatabase {
 public:
  /// Throws CommandError, saying what refused, if there is no database or it does not open.
  OpenedDatabase(const std::string& path, TerminalInterface& ui);

  [[nodiscard]] QvRefSystem::TdatamoduleQvRfData& Data() { return *data_; }
  [[nodiscard]] QvRefSystem::TQvRfDataProcessor& Processor(
      const QvRefSystem::ObjectDescriptor& type);
  /// Makes the object that the argument names the current record of its processor. The argument is
  /// a key, "epsg:CODE" or "name:TEXT". Throws CommandError if no object, or more than one, is
  /// named by it, and UsageError for a text of another form.
  QvRefSystem::TQvRfDataProcessor& Locate(const QvRefSystem::ObjectDescriptor& type,
                                          const std::string& object);

 private:
  [[nodiscard]] int KeyOf(const QvRefSystem::ObjectDescriptor& type, const std::string& object);

  std::unique_ptr<QvRefSystem::TdatamoduleQvRfData> data_;
};

}  // namespace RefframeCli
