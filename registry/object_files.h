#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/data/string_tree.h"
#include "platform/geocore/projjson.h"
#include "platform/storage/work_folder.h"
#include "processors/object_descriptor.h"

/// The files in which objects travel: how their forms are told apart, read, written and named.
/// Texts for users are made by who calls: what is thrown from here names no more than the fault.
namespace QvRefSystem {

/// The forms of an object file.
enum class ObjectFileForm {
  /// The string tree as text; a file of it ends in one zero byte.
  kText,
  /// The string tree as XML.
  kXml,
  /// The JSON of PROJ, for reference systems alone.
  kProjJson,
  /// Well-known text (ISO 19162), for reference systems alone.
  kWkt2
};

/// Whether the form is one that holds reference systems alone.
[[nodiscard]] constexpr bool IsSystemForm(ObjectFileForm form) {
  return form == ObjectFileForm::kProjJson || form == ObjectFileForm::kWkt2;
}

/// An object and a form that do not go together.
class ObjectFormError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Throws ObjectFormError if objects of that type never come in that form.
void RequireForm(ObjectFileForm form, const ObjectDescriptor& type);

/// The extension of files of that form, with its dot. Objects in the text form are told apart by
/// it: it is their stored label (TypeName), blanks included.
[[nodiscard]] std::string ObjectFileExtension(ObjectFileForm form, std::string_view typeName);

/// The form that the first character of a content shows, blanks and a byte order mark aside; what
/// shows none counts as WKT.
[[nodiscard]] ObjectFileForm FormOfContent(std::string_view content);
/// Which of the two forms of a tree a content is meant to be in, kText or kXml: the one whose
/// opening bracket comes first, so that a damaged file is told as what it was.
[[nodiscard]] ObjectFileForm TreeFormOfContent(std::string_view content);

/// The tree in that form. A geodetic system is written with so many axes in the forms of PROJ; the
/// other forms take no notice of `dimension`. Throws ObjectFormError for a system that PROJ cannot
/// tell, with its reason.
[[nodiscard]] std::string WriteTree(const QvCommonUtils::TStringTree& tree, ObjectFileForm form,
                                    Dimension dimension);
/// Replaces what `tree` holds. Throws TreeFormatError for a content in a form of a tree, and
/// ObjectFormError for one of PROJ, both with `tree` unchanged.
void ReadTree(std::string_view content, ObjectFileForm form, QvCommonUtils::TStringTree* tree);

/// The type of the object that a tree holds, told by the members that it has. Nothing for a tree
/// that holds no object.
[[nodiscard]] std::optional<TObjectType> TypeOfTree(const QvCommonUtils::TStringTree& tree);

/// Throws StorageError if a file that is written under the path, through links too, would come onto
/// a database, one of its files or journals, or into its folders.
void RequireOutsideDatabases(const std::string& path);

/// Writes any tree in one of its two forms over whatever stands under the path, but never over
/// anything that belongs to a database. The file takes its place when it is whole. Throws
/// StorageError.
void WriteTreeFile(const QvCommonUtils::TStringTree& tree, const std::string& path,
                   ObjectFileForm form);
/// Puts what WriteTree gave into a file in place of what stood there, with the same exception: the
/// text form with its zero byte, the others with a line feed at the end. Throws StorageError.
void SaveObjectFile(const std::string& path, ObjectFileForm form, std::string_view content);

/// A file is larger than its reader allows.
class ObjectFileTooLarge : public std::length_error {
 public:
  using std::length_error::length_error;
};

/// The whole file. Throws StorageError if it cannot be read, and ObjectFileTooLarge, before
/// anything is read, if it has more bytes than `largest`.
[[nodiscard]] std::string LoadObjectFile(const std::string& path,
                                         std::optional<std::uint64_t> largest = std::nullopt);

/// Gives names to the files of one folder: the object's name without what a file system could
/// take amiss. No two are equal, also where case does not count, and none names a file that is
/// there already.
class FreeFileNames {
 public:
  /// The folder has to exist once files are written; names are given without it.
  explicit FreeFileNames(std::string folder) : folder_(std::move(folder)) {}
  /// The path of the next file; `extension` has its dot.
  [[nodiscard]] std::string Next(std::string_view objectName, std::string_view extension);

 private:
  std::string folder_;
  // All that were given, in upper case.
  std::set<std::string> used_;
};

/// The files of many objects, written to one folder together: they are flushed once, and none
/// stands under its name before all are whole. Without Deliver none comes there.
class ObjectFolder {
 public:
  /// Makes the folder and what is missing of its path. Throws StorageError, also for the folder of
  /// a database.
  explicit ObjectFolder(const std::string& folder);
  /// Adds the file of an object with what WriteTree gave for it. Throws StorageError.
  void Add(std::string_view objectName, std::string_view extension, ObjectFileForm form,
           std::string_view content);
  /// Puts all files in their places. Throws StorageError where the medium takes them no more, or
  /// where another program has taken one of the names meanwhile; those ahead of it then stand.
  void Deliver();

 private:
  QvPlatform::WorkFolder aside_;
  std::string folder_;
  FreeFileNames names_;
  // The files by their names, which they have aside already.
  std::vector<std::string> files_;
};

}  // namespace QvRefSystem
