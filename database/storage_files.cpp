#include "database/storage_files.h"

#include <fcntl.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <system_error>

#include "platform/storage/aside_file.h"
#include "platform/storage/file_stream.h"
#include "platform/storage/resource_session.h"
#include "platform/text/text.h"
#include "platform/ui/texts.h"

namespace QvRefSystem {
namespace {

namespace fs = std::filesystem;
using QvPlatform::QvOpenMode;
using QvPlatform::StorageError;
using QvPlatform::TQvFileStream;
using QvPlatform::TQvResourceSession;
using QvPlatform::TQvStream;

fs::path ToPath(std::string_view utf8) {
  return {std::u8string(utf8.begin(), utf8.end())};
}

std::string FromPath(const fs::path& path) {
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
}

bool IsDigits(std::string_view text) {
  return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

// Splits "rest<open>number<close>" into rest and number; the number of a name without one is 0.
struct NumberedName {
  std::string rest;
  int number = 0;
};

NumberedName SplitNumber(std::string_view name, std::size_t earliest, char open,
                         std::string_view close) {
  if (name.ends_with(close)) {
    const std::string_view body = name.substr(0, name.size() - close.size());
    const std::size_t at = body.rfind(open);
    int number = 0;
    if (at != std::string_view::npos && at >= earliest && IsDigits(body.substr(at + 1)) &&
        QvPlatform::TextToInteger(body.substr(at + 1), &number) && number < 2'000'000'000) {
      return {std::string(body.substr(0, at)), number};
    }
  }
  return {std::string(name), 0};
}

// Where no folder can be made, the file tells why.
void MakeFolderOf(const std::string& path) {
  const fs::path folder = ToPath(path).parent_path();
  std::error_code error;
  if (!folder.empty()) fs::create_directories(folder, error);
}

// Not every file system can refuse a rename that would replace.
std::error_code RenameToFreePlace(const std::string& from, const std::string& to) {
  if (renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return {};
  std::error_code error(errno, std::generic_category());
  if (error == std::errc::invalid_argument || error == std::errc::function_not_supported) {
    fs::rename(ToPath(from), ToPath(to), error);
  }
  return error;
}

}  // namespace

std::unique_ptr<TQvStream> MakeStream(bool resourceForm) {
  if (resourceForm) return std::make_unique<TQvResourceSession>();
  return std::make_unique<TQvFileStream>();
}

std::unique_ptr<TQvStream> CreateStream(const std::string& name, bool resourceForm) {
  if (!resourceForm) MakeFolderOf(name);
  auto stream = MakeStream(resourceForm);
  if (!stream->Open(name, QvOpenMode::kCreate)) throw StorageError(stream->LastError());
  return stream;
}

void TellCannotCreate(const std::string& name, bool resourceForm, QvPlatform::TUserInterface& ui,
                      const std::string& reason) {
  using QvPlatform::TextId;
  const TextId text = resourceForm ? TextId::kCannotCreateResource : TextId::kCannotCreateFile;
  ui.ShowMessage(
      QvPlatform::MessageKind::kError,
      QvPlatform::SystemText(text) + " " + name + (reason.empty() ? reason : " (" + reason + ")"),
      QvPlatform::MessageButtons::kOk);
}

std::string ExtractTableBaseName(std::string_view name) {
  const std::size_t separator = name.find_last_of('/');
  if (separator != std::string_view::npos) name.remove_prefix(separator + 1);
  std::string base = QvPlatform::Trim(name);
  if (base.size() >= 4) {
    std::string extension = base.substr(base.size() - 4);
    for (char& c : extension) {
      if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    }
    if (extension == ".dat") base.resize(base.size() - 4);
  }
  return base;
}

bool StorageFileOpens(const std::string& name, bool resourceForm) {
  const auto stream = MakeStream(resourceForm);
  return stream->Open(name, QvOpenMode::kRead);
}

bool StorageFileIsAbsent(const std::string& name, bool resourceForm) {
  if (resourceForm) return TQvResourceSession::IsAbsent(name);
  std::error_code error;
  const fs::file_status status = fs::symlink_status(ToPath(name), error);
  if (status.type() == fs::file_type::not_found) return true;
  if (error) throw StorageError("\"" + name + "\" cannot be looked at: " + error.message());
  return false;
}

bool StorageFileExists(const std::string& name, bool resourceForm) {
  if (resourceForm) return TQvResourceSession::Exists(name);
  std::error_code error;
  return fs::exists(ToPath(name), error);
}

bool DeleteStorageFile(const std::string& name, bool resourceForm) {
  if (resourceForm) return TQvResourceSession::Delete(name);
  std::error_code error;
  const fs::path path = ToPath(name);
  return fs::is_regular_file(path, error) && fs::remove(path, error);
}

std::string ReadStorageFile(const std::string& name, bool resourceForm) {
  const auto stream = MakeStream(resourceForm);
  if (!stream->Open(name, QvOpenMode::kRead)) throw StorageError(stream->LastError());
  std::string bytes = stream->ReadAll();
  if (bytes.empty()) throw StorageError("\"" + name + "\" is empty");
  return bytes;
}

bool LoadStorageFile(const std::string& name, bool resourceForm, std::string* content) {
  try {
    *content = ReadStorageFile(name, resourceForm);
    return true;
  } catch (const StorageError&) {
    return false;
  }
}

void CreateStorageFile(const std::string& name, bool resourceForm, std::string_view content) {
  if (resourceForm) {
    // Nobody comes between the question and the writing of one transaction.
    if (StorageFileExists(name, true)) throw StorageError("\"" + name + "\" is there already");
    return WriteStorageFile(name, true, content);
  }
  MakeFolderOf(name);
  QvPlatform::detail::AsideFile file(name);
  file.Write(content.data(), content.size());
  file.Publish(QvPlatform::detail::AsideFile::Place::kMustBeFree);
}

void WriteStorageFile(const std::string& name, bool resourceForm, std::string_view content) {
  const auto stream = CreateStream(name, resourceForm);
  stream->Write(content.data(), content.size());
  stream->Commit();
}

bool SaveStorageFile(const std::string& name, bool resourceForm, std::string_view content) {
  try {
    WriteStorageFile(name, resourceForm, content);
    return true;
  } catch (const StorageError&) {
    return false;
  }
}

bool CopyStorageFile(const std::string& from, bool fromResourceForm, const std::string& to,
                     bool toResourceForm) {
  std::string content;
  return LoadStorageFile(from, fromResourceForm, &content) &&
         SaveStorageFile(to, toResourceForm, content);
}

void MoveStorageFile(const std::string& from, const std::string& to, bool resourceForm) {
  if (resourceForm) {
    const auto stream = MakeStream(true);
    if (!stream->Open(from, QvOpenMode::kRead)) throw StorageError(stream->LastError());
    WriteStorageFile(MakeUniqueStorageName(to, true), true, stream->ReadAll());
    if (!DeleteStorageFile(from, true)) throw StorageError("\"" + from + "\" cannot be moved");
    return;
  }
  MakeFolderOf(to);
  std::error_code error = std::make_error_code(std::errc::file_exists);
  while (error == std::errc::file_exists)
    error = RenameToFreePlace(from, MakeUniqueStorageName(to, false));
  if (error) throw StorageError("\"" + from + "\" cannot be moved: " + error.message());
}

std::vector<std::string> ListStorageFiles(const std::string& prefix, bool resourceForm) {
  if (resourceForm) return TQvResourceSession::NamesBehind(prefix);
  std::vector<std::string> names;
  std::error_code error;
  if (!fs::exists(ToPath(prefix), error)) return names;
  fs::directory_iterator entry(ToPath(prefix), error);
  for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
    std::error_code ignored;
    if (entry->is_regular_file(ignored)) names.push_back(FromPath(entry->path().filename()));
  }
  if (error) throw StorageError("\"" + prefix + "\" cannot be read: " + error.message());
  return names;
}

std::string StorageShortName(std::string_view name, bool resourceForm) {
  const std::size_t at = name.find_last_of(resourceForm ? '.' : '/');
  return std::string(at == std::string_view::npos ? name : name.substr(at + 1));
}

std::string MakeFileName(std::string_view name) {
  std::string result(name);
  static constexpr std::string_view kUnwanted = "/.\\:+*?!\"";
  std::replace_if(
      result.begin(), result.end(), [](char c) { return kUnwanted.find(c) != kUnwanted.npos; },
      ' ');
  return result;
}

std::string MakeUniqueStorageName(std::string_view name, bool resourceForm) {
  const std::string trimmed = QvPlatform::Trim(name);
  if (resourceForm) {
    std::string candidate = trimmed;
    const std::size_t dot = trimmed.rfind('.');
    NumberedName parts =
        SplitNumber(trimmed, dot == std::string::npos ? 0 : dot + 1, '_', std::string_view());
    while (StorageFileExists(candidate, true)) {
      candidate = parts.rest + "_" + std::to_string(++parts.number);
    }
    return candidate;
  }
  const std::string extension = FromPath(ToPath(trimmed).extension());
  const std::string stem = QvPlatform::Trim(trimmed.substr(0, trimmed.size() - extension.size()));
  const std::size_t separator = stem.rfind('/');
  std::string candidate = stem + extension;
  NumberedName parts =
      SplitNumber(stem, separator == std::string::npos ? 0 : separator + 1, '[', "]");
  while (StorageFileExists(candidate, false)) {
    candidate = parts.rest + "[" + std::to_string(++parts.number) + "]" + extension;
  }
  return candidate;
}

}  // namespace QvRefSystem
