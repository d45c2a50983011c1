#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/storage/stream.h"
#include "platform/ui/user_interface.h"

/// Whole-file operations over both forms of a database. Each takes a stream name: a path in the
/// folder form, a resource name in the resource form. No stream stays open between calls.
namespace QvRefSystem {

/// A new stream of that form, closed.
[[nodiscard]] std::unique_ptr<QvPlatform::TQvStream> MakeStream(bool resourceForm);

/// A new stream of that form, open for writing, in the folder form after making all missing folders
/// of its path. Throws StorageError if it cannot be opened.
[[nodiscard]] std::unique_ptr<QvPlatform::TQvStream> CreateStream(const std::string& name,
                                                                  bool resourceForm);

/// Tells the user by an error box that a stream of that name and form could not be opened, read or
/// written, and the reason if there is one.
void TellCannotCreate(const std::string& name, bool resourceForm, QvPlatform::TUserInterface& ui,
                      const std::string& reason = {});

/// The file name part of a path, trimmed, without the extension "dat" in any case.
[[nodiscard]] std::string ExtractTableBaseName(std::string_view name);
/// Whether the stream opens for reading.
[[nodiscard]] bool StorageFileOpens(const std::string& name, bool resourceForm);
/// Whether it is certain that nothing stands under the name: the file system or the container says
/// so. Throws StorageError where neither can be asked, since what cannot be looked at may be there.
[[nodiscard]] bool StorageFileIsAbsent(const std::string& name, bool resourceForm);
/// Whether something stands under the name. Asks the file system or the container; opens nothing.
[[nodiscard]] bool StorageFileExists(const std::string& name, bool resourceForm);
/// Removes a file or a resource. True if it was there and is gone.
bool DeleteStorageFile(const std::string& name, bool resourceForm);
/// Reads the whole stream; reading nothing counts as failure. `content` is unchanged on failure.
[[nodiscard]] bool LoadStorageFile(const std::string& name, bool resourceForm,
                                   std::string* content);
/// The same content; throws StorageError with the reason where there is none.
[[nodiscard]] std::string ReadStorageFile(const std::string& name, bool resourceForm);
/// Creates the stream where nothing stands under its name: what does is never replaced. In the
/// folder form all missing folders of its path are made. Throws StorageError.
void CreateStorageFile(const std::string& name, bool resourceForm, std::string_view content);
/// Creates the stream, in the folder form after making all missing folders of its path. Throws
/// StorageError; what stood under the name still stands then.
void WriteStorageFile(const std::string& name, bool resourceForm, std::string_view content);
/// The same; false on failure.
[[nodiscard]] bool SaveStorageFile(const std::string& name, bool resourceForm,
                                   std::string_view content);
/// Copies a whole stream, also from one form to the other. On failure, an empty stream among them,
/// what stood under `to` still stands.
[[nodiscard]] bool CopyStorageFile(const std::string& from, bool fromResourceForm,
                                   const std::string& to, bool toResourceForm);
/// Moves a whole file or resource to a name where nothing stands: `to`, or as MakeUniqueStorageName
/// numbers it. In the folder form all missing folders of its path are made. Throws StorageError
/// with the file where it was.
void MoveStorageFile(const std::string& from, const std::string& to, bool resourceForm);
/// Names of the files that stand in a folder, or of the resources whose names begin with the
/// prefix, as they follow it. The prefix ends in the separator. Nothing if there is no such place.
/// Throws StorageError if it cannot be read.
[[nodiscard]] std::vector<std::string> ListStorageFiles(const std::string& prefix,
                                                        bool resourceForm);
/// The part behind the last "." in the resource form; the file name in the folder form.
[[nodiscard]] std::string StorageShortName(std::string_view name, bool resourceForm);
/// The name of an object with a blank in the place of each character that a file name had better
/// not hold: / . \ : + * ? ! and the double quote.
[[nodiscard]] std::string MakeFileName(std::string_view name);
/// The first free name: "Alps", "Alps_1", "Alps_2" in the resource form; "a.txt", "a[1].txt",
/// "a[2].txt" in the folder form. A number that is there already is raised.
[[nodiscard]] std::string MakeUniqueStorageName(std::string_view name, bool resourceForm);

}  // namespace QvRefSystem
