#pragma once

#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

#include "platform/storage/stream.h"

/// A small structured document of sections and items in XML.
///
/// The root is <xini version="1">. A section is an element <s>, an item an element <i>; a name
/// stands in the attribute "n" and is left out for unnamed ones. The text of an item is its value
/// in UTF-8, where some bytes stand as a backslash and two hexadecimal digits: the backslash
/// itself, control characters, a blank at either end, U+FFFE and U+FFFF, and bytes that are not
/// UTF-8. So any bytes at all survive, and white space at the ends of an item's text is layout.
/// Compact mode changes only the layout (no line breaks inside).
namespace QvPlatform {

/// A document that cannot be read; the message tells the path to the place.
class XIniError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Deepest nesting of sections, for the writer and the reader.
inline constexpr int kMaxXIniDepth = 1024;

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

  void SetCompact(bool compact);
  /// An empty name makes an unnamed member, here and below.
  [[nodiscard]] bool EnterSection(std::string_view name);
  [[nodiscard]] bool ExitSection();
  [[nodiscard]] bool WriteInt(std::string_view name, int value);
  [[nodiscard]] bool WriteString(std::string_view name, std::string_view value);
  /// Closes what is open and writes the whole document to the stream. Throws StorageError.
  void Finish();
  /// Closes what is open and gives the document.
  [[nodiscard]] std::string TakeDocument();

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

/// Operations whose name ends in E throw XIniError where the thing they need is missing or is of
/// another kind; the others answer.
class TQvXIniReader {
 public:
  /// Reads all of the stream and parses it. Refuses by XIniError what is not such a document in
  /// UTF-8, any DOCTYPE, entities that XML does not define by itself, and sections that nest too
  /// deep. `strict` also refuses elements, attributes and text that have no meaning here, and
  /// broken escapes, which are otherwise passed over and taken literally.
  explicit TQvXIniReader(TQvStream* stream, bool strict = true);
  explicit TQvXIniReader(std::string_view document, bool strict = true);
  ~TQvXIniReader();
  TQvXIniReader(const TQvXIniReader&) = delete;
  TQvXIniReader& operator=(const TQvXIniReader&) = delete;

  /// Number of unnamed members of the current section.
  [[nodiscard]] unsigned Count() const;
  /// Walking the members in order costs the same for each.
  [[nodiscard]] bool Exists(unsigned member) const;
  /// Looks for the named member; later reads and entries without an argument take it. A name that
  /// stands twice in the section throws XIniError.
  [[nodiscard]] bool FindF(std::string_view name);
  void FindFE(std::string_view name);
  void EnterSectionE();
  void EnterSectionE(unsigned member);
  void ExitSectionE();
  /// The whole text is a 32-bit decimal.
  [[nodiscard]] int ReadIntE();
  [[nodiscard]] std::string ReadStringE();
  [[nodiscard]] std::string ReadStringE(unsigned member);
  /// Where the reader stands, for messages: "/subtree/[0]/field/[3]".
  [[nodiscard]] std::string Path() const;

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace QvPlatform
