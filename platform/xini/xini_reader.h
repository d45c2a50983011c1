#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "platform/storage/stream.h"
#include "platform/xini/xini.h"

namespace QvPlatform {

/// Operations whose name ends in E throw XIniError where the thing they need is missing or is of
/// another kind; the others answer.
class TQvXIniReader {
 public:
  /// Reads all of the stream and parses it. Refuses by XIniError what is not such a document in
  /// UTF-8, any DOCTYPE, entities that XML does not define by itself, and sections that nest too
  /// deep. `strict` also refuses elements, attributes and text that have no meaning here, and
  /// broken escapes, which are otherwise passed over and taken literally.
  explicit TQvXIniReader(TQvStream* stream, bool strict = true);
  /// The same, from a document in memory, which is copied.
  explicit TQvXIniReader(std::string_view document, bool strict = true);
  ~TQvXIniReader();
  TQvXIniReader(const TQvXIniReader&) = delete;
  TQvXIniReader& operator=(const TQvXIniReader&) = delete;

  /// Number of unnamed members of the current section.
  [[nodiscard]] unsigned Count() const;
  /// Whether the section has an unnamed member of this number, from 0. Walking the members in order
  /// costs the same for each.
  [[nodiscard]] bool Exists(unsigned member) const;
  /// Looks for the named member; later reads and entries without an argument take it. A name that
  /// stands twice in the section throws XIniError.
  [[nodiscard]] bool FindF(std::string_view name);
  /// Looks for the named member, which has to be there.
  void FindFE(std::string_view name);
  /// Enters the section that was looked for last.
  void EnterSectionE();
  /// Enters the unnamed section of this number, from 0.
  void EnterSectionE(unsigned member);
  /// Goes back to the section around.
  void ExitSectionE();
  /// The value of the item that was looked for last, whose whole text is a 32-bit decimal.
  [[nodiscard]] int ReadIntE();
  /// The value of the item that was looked for last.
  [[nodiscard]] std::string ReadStringE();
  /// The value of the unnamed item of this number, from 0.
  [[nodiscard]] std::string ReadStringE(unsigned member);
  /// Where the reader stands, for messages: "/subtree/[0]/field/[3]".
  [[nodiscard]] std::string Path() const;

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace QvPlatform
