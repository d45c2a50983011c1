#pragma once

#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "platform/data/string_tree.h"
#include "platform/geocore/projjson.h"
#include "processors/object_descriptor.h"

/// The forms in which an object is written to and read from files.
namespace RefframeCli {

enum class ObjectForm { kText, kXml, kProjJson, kWkt2 };

/// Whether the form is one that holds reference systems alone.
[[nodiscard]] constexpr bool IsSystemForm(ObjectForm form) {
  return form == ObjectForm::kProjJson || form == ObjectForm::kWkt2;
}

/// The object in that form. Throws CommandError, or TreeFormatError, for an object that the form
/// cannot hold; PROJJSON and WKT hold reference systems alone.
[[nodiscard]] std::string WriteObject(const QvCommonUtils::TStringTree& tree,
                                      const QvRefSystem::ObjectDescriptor& type, ObjectForm form,
                                      QvRefSystem::Dimension dimension);
/// Reads an object; without a form the content tells it. Throws as WriteObject does.
void ReadObject(std::string_view content, const QvRefSystem::ObjectDescriptor& type,
                std::optional<ObjectForm> form, QvCommonUtils::TStringTree* tree);

/// Puts what WriteObject gave into a file in place of what stood there; the text form is closed by
/// a zero byte. Throws CommandError.
void SaveObject(const std::string& path, ObjectForm form, std::string_view content);
/// The whole file. Throws CommandError.
[[nodiscard]] std::string LoadObject(const std::string& path);

/// Gives names to the files of one folder: the object's name without what a file system could
/// take amiss. No two are equal, also where case does not count, and none names a file that is
/// there already.
class FileNames {
 public:
  explicit FileNames(std::string folder) : folder_(std::move(folder)) {}
  /// The path of the next file.
  [[nodiscard]] std::string Next(std::string_view objectName,
                                 const QvRefSystem::ObjectDescriptor& type, ObjectForm form);

 private:
  std::string folder_;
  std::set<std::string> used_;
};

}  // namespace RefframeCli
