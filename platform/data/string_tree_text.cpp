#include "platform/data/string_tree_text.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <limits>
#include <utility>

namespace QvCommonUtils {

using Field = TDataField<std::string>;
using Tree = TDataTree<std::string>;

namespace {

constexpr bool IsEscaped(char c) {
  return c == '\t' || c == '\n' || c == '\r' || c == '\\';
}

constexpr std::uint64_t kOnes = 0x0101010101010101U;
constexpr std::uint64_t kHighs = 0x8080808080808080U;

/// Not 0 if one of eight bytes is below 0x0E or a backslash, as all are that Encode escapes.
std::uint64_t EscapeMarks(std::uint64_t eight) {
  const std::uint64_t low = (eight - kOnes * 0x0E) & ~eight;
  const std::uint64_t slash = eight ^ (kOnes * '\\');
  return (low | ((slash - kOnes) & ~slash)) & kHighs;
}

template <typename Word>
Word Load(const char* bytes) {
  Word word;
  std::memcpy(&word, bytes, sizeof word);
  return word;
}

/// Calls `visit(offset, word)` for words that together cover the text; at its end they overlap.
/// Nearly all texts are short and free of escapes: words make both the look at them and their copy
/// much faster than bytes do.
template <typename Visit>
void ForEachWord(std::string_view text, const Visit& visit) {
  const char* bytes = text.data();
  const std::size_t size = text.size();
  if (size >= 8) {
    for (std::size_t i = 0; i + 8 < size; i += 8)
      visit(i, Load<std::uint64_t>(bytes + i));
    visit(size - 8, Load<std::uint64_t>(bytes + size - 8));
  } else if (size >= 4) {
    visit(0, Load<std::uint32_t>(bytes));
    visit(size - 4, Load<std::uint32_t>(bytes + size - 4));
  } else {
    for (std::size_t i = 0; i < size; ++i)
      visit(i, bytes[i]);
  }
}

/// The word as eight bytes, filled with blanks.
std::uint64_t Fill(std::uint64_t word) {
  return word;
}
std::uint64_t Fill(std::uint32_t word) {
  return kOnes * ' ' << 32 | word;
}
std::uint64_t Fill(char byte) {
  return kOnes * ' ' << 8 | static_cast<unsigned char>(byte);
}

/// Whether Encode may change the text; a true answer wants a closer look.
bool MayEscape(std::string_view text) {
  std::uint64_t marks = 0;
  ForEachWord(text, [&](std::size_t, auto word) { marks |= EscapeMarks(Fill(word)); });
  return marks != 0;
}

/// Encode turns each escaped byte into two.
std::size_t EncodedSize(std::string_view text) {
  if (!MayEscape(text)) return text.size();
  return text.size() + static_cast<std::size_t>(std::count_if(text.begin(), text.end(), IsEscaped));
}

/// No less than EncodedSize, without a look at short texts.
std::size_t EncodedBound(std::string_view text) {
  constexpr std::size_t kShort = 256;
  return text.size() > kShort ? EncodedSize(text) : 2 * text.size();
}

/// Writes the text through Encode to memory of EncodedSize; returns the position behind it.
char* PutEncoded(std::string_view text, char* out) {
  std::uint64_t marks = 0;
  ForEachWord(text, [&](std::size_t at, auto word) {
    marks |= EscapeMarks(Fill(word));
    std::memcpy(out + at, &word, sizeof word);
  });
  if (marks == 0) return out + text.size();
  const std::string encoded = QvPlatform::Encode(text);
  if (encoded.size() != EncodedSize(text)) throw std::logic_error("Encode and its size disagree");
  return std::copy(encoded.begin(), encoded.end(), out);
}

/// Bytes of the longest number, which has a sign.
constexpr std::ptrdiff_t kLongestNumber = 11;

/// Counts the bytes that a BufferSink would write.
class CountSink {
 public:
  void Tabs(int count) { size_ += static_cast<std::size_t>(count); }
  void Char(char) { ++size_; }
  void Number(int value) {
    std::uint32_t rest = static_cast<std::uint32_t>(value);
    if (value < 0) {
      ++size_;
      rest = 0U - rest;
    }
    ++size_;
    for (std::uint32_t bound = 10; rest >= bound; bound *= 10) {
      ++size_;
      if (bound == 1000000000U) break;
    }
  }
  void Raw(std::string_view text) { size_ += text.size(); }
  void Encoded(std::string_view text) { size_ += EncodedSize(text); }
  void Value(const Field& field, int i) { size_ += field.PutValueText(i, nullptr); }
  [[nodiscard]] std::size_t Size() const { return size_; }

 protected:
  void Add(std::size_t bytes) { size_ += bytes; }

 private:
  std::size_t size_ = 0;
};

/// Counts at least the bytes that a BufferSink would write, without a look at short texts: a pass
/// that is spared costs more than the bytes that it may claim too many.
class BoundSink : public CountSink {
 public:
  void Number(int) { Add(kLongestNumber); }
  void Encoded(std::string_view text) { Add(EncodedBound(text)); }
  void Value(const Field& field, int i) { Add(field.BoundValueText(i)); }
};

/// Writes to memory that has been counted.
class BufferSink {
 public:
  explicit BufferSink(char* out) : out_(out) {}
  void Tabs(int count) {
    for (int i = 0; i < count; ++i)
      *out_++ = '\t';
  }
  void Char(char c) { *out_++ = c; }
  void Number(int value) {
    if (value >= 0 && value < 10) {
      Char(static_cast<char>('0' + value));
    } else {
      out_ = std::to_chars(out_, out_ + kLongestNumber, value).ptr;
    }
  }
  void Raw(std::string_view text) { out_ = std::copy(text.begin(), text.end(), out_); }
  void Encoded(std::string_view text) { out_ = PutEncoded(text, out_); }
  void Value(const Field& field, int i) { out_ += field.PutValueText(i, out_); }
  [[nodiscard]] const char* End() const { return out_; }

 private:
  char* out_;
};

// Sinks travel by value: one whose address is taken could be changed by each byte it writes, as
// far as the compiler knows, and would live in memory.

template <typename Sink>
Sink PutAddress(int id, int index, Sink sink) {
  sink.Char('(');
  sink.Number(id);
  sink.Char(',');
  sink.Number(index);
  sink.Char(')');
  return sink;
}

template <typename Sink>
Sink PutField(const Field& field, int depth, Sink sink) {
  if (field.IsNote()) return sink;
  sink.Tabs(depth);
  sink = PutAddress(field.Id, field.Index, sink);
  sink.Char('[');
  sink.Number(field.Count);
  sink.Char(']');
  sink.Char('\t');
  sink.Encoded(field.Label.View());
  for (int i = 0; i < field.Count; ++i) {
    sink.Char('\t');
    sink.Value(field, i);
  }
  sink.Char('\n');
  return sink;
}

bool HasLineBreak(std::string_view text) {
  return MayEscape(text) && text.find_first_of("\r\n") != std::string_view::npos;
}

/// A line break in a node's label would end its line early, and the text would read as another
/// tree.
void CheckNodeLabel(const Tree& node) {
  if (!HasLineBreak(node.Label.View())) return;
  throw TreeFormatError("the label of the subtree (" + std::to_string(node.Id) + "," +
                        std::to_string(node.Index) + ") has a line break");
}

template <typename Sink>
Sink PutNode(const Tree& node, int depth, Sink sink) {
  if (depth > kMaxTreeDepth) throw TreeFormatError("the tree is too deep for its text form");
  CheckNodeLabel(node);
  sink.Tabs(depth);
  sink = PutAddress(node.Id, node.Index, sink);
  sink.Raw(node.Label.View());
  sink.Char('\n');
  for (const auto& field : node.Fields)
    sink = PutField(*field, depth, sink);
  for (const auto& subtree : node.Subtrees)
    sink = PutNode(*subtree, depth + 1, sink);
  sink.Tabs(depth);
  sink.Char('\n');
  return sink;
}

int ToInt(std::size_t size) {
  if (size > static_cast<std::size_t>(std::numeric_limits<int>::max()))
    throw TreeFormatError("a field's text exceeds 2 GiB");
  return static_cast<int>(size);
}

/// A place in a text that is being read, with the errors that tell it.
class Cursor {
 public:
  Cursor(std::string_view text, std::size_t at) : text_(text), at_(at) {}

  [[nodiscard]] std::size_t At() const { return at_; }
  /// The zero byte of a file's end is not asked for here: it never begins a line.
  [[nodiscard]] bool AtEnd() const { return at_ >= text_.size(); }
  [[nodiscard]] std::string_view Rest() const { return text_.substr(at_); }
  void Skip(std::size_t count) { at_ += count; }

  [[noreturn]] void Fail(const std::string& what) const {
    const auto end = text_.begin() + static_cast<std::ptrdiff_t>(std::min(at_, text_.size()));
    const auto line = 1 + std::count(text_.begin(), end, '\n');
    throw TreeFormatError("line " + std::to_string(line) + ": " + what);
  }

  /// Number of TABs from here; no more than one above `limit` are looked at.
  [[nodiscard]] int CountTabs(int limit) const {
    std::size_t i = at_;
    const std::size_t end = std::min(text_.size(), at_ + static_cast<std::size_t>(limit) + 1);
    while (i < end && text_[i] == '\t')
      ++i;
    return static_cast<int>(i - at_);
  }

  void Expect(char c) {
    if (AtEnd()) Fail("the text ends too early");
    if (text_[at_] != c) Fail(std::string("\"") + c + "\" is missing");
    ++at_;
  }

  [[nodiscard]] int TakeInteger() {
    int value = 0;
    const char* begin = text_.data() + at_;
    const auto result = std::from_chars(begin, text_.data() + text_.size(), value);
    if (result.ec == std::errc::result_out_of_range) Fail("a number exceeds 32 bits");
    if (result.ec != std::errc()) Fail(AtEnd() ? "the text ends too early" : "a number is missing");
    at_ += static_cast<std::size_t>(result.ptr - begin);
    return value;
  }

  /// The rest of the line without its LF or CR LF. Stays in front of it.
  [[nodiscard]] std::string_view PeekLine() const {
    const std::size_t end = text_.find('\n', at_);
    if (end == std::string_view::npos) Fail("the text ends within a line");
    std::string_view line = text_.substr(at_, end - at_);
    // The writer leaves no bare CR anywhere: an editor has put it there.
    if (line.ends_with('\r')) line.remove_suffix(1);
    return line;
  }

  void SkipLine() { at_ = text_.find('\n', at_) + 1; }

 private:
  std::string_view text_;
  std::size_t at_;
};

struct Address {
  int id;
  int index;
};

Address TakeAddress(Cursor* cursor) {
  cursor->Expect('(');
  const int id = cursor->TakeInteger();
  cursor->Expect(',');
  const int index = cursor->TakeInteger();
  cursor->Expect(')');
  return {id, index};
}

/// Fills a field that has as many values as `line`, the label and the values, has texts for.
void TakeValues(std::string_view line, TStringField* field) {
  std::size_t begin = std::min(line.find('\t'), line.size());
  for (int i = 0; i < field->Count; ++i) {
    ++begin;
    const std::size_t end = std::min(line.find('\t', begin), line.size());
    field->SetValueFromView(line.substr(begin, end - begin), i);
    begin = end;
  }
}

std::string_view WithoutByteOrderMark(std::string_view text) {
  return text.starts_with("\xEF\xBB\xBF") ? text.substr(3) : text;
}

}  // namespace

int Field::WriteText(char* buffer, int position, int depth) const {
  const int size = ToInt(PutField(*this, depth, CountSink()).Size());
  if (buffer != nullptr) PutField(*this, depth, BufferSink(buffer + position));
  return size;
}

std::size_t TStringField::PutValueText(int valueIndex, char* out) const {
  if (!HasValue(valueIndex)) return 0;
  const std::string& value = Values[static_cast<std::size_t>(valueIndex)];
  if (out == nullptr) return EncodedSize(value);
  return static_cast<std::size_t>(PutEncoded(value, out) - out);
}

std::size_t TStringField::BoundValueText(int valueIndex) const {
  return HasValue(valueIndex) ? EncodedBound(Values[static_cast<std::size_t>(valueIndex)]) : 0;
}

int TStringField::WriteValueText(int valueIndex, char* buffer, int position) const {
  const int size = ToInt(PutValueText(valueIndex, nullptr));
  if (buffer != nullptr) PutValueText(valueIndex, buffer + position);
  return size;
}

void TStringField::SetValueFromView(std::string_view text, int valueIndex) {
  if (!HasValue(valueIndex)) return;
  std::string& value = Values[static_cast<std::size_t>(valueIndex)];
  if (text.find('\\') == std::string_view::npos) {
    value = text;
  } else {
    value = QvPlatform::Decode(text);
  }
}

std::unique_ptr<Field> TStringTree::CreateField(std::string_view text, std::size_t* position) {
  Cursor cursor(text, *position);
  const Address address = TakeAddress(&cursor);
  cursor.Expect('[');
  const int count = cursor.TakeInteger();
  cursor.Expect(']');
  if ((address.id | address.index | count) < 0) cursor.Fail("a field has a negative number");
  cursor.Expect('\t');
  const std::string_view line = cursor.PeekLine();
  // The claim is checked against the line before anything is allocated for it.
  const auto present = std::count(line.begin(), line.end(), '\t');
  if (present != count) {
    cursor.Fail("a field claims " + std::to_string(count) + " values, and its line has " +
                std::to_string(present));
  }
  const std::string_view label = line.substr(0, line.find('\t'));
  auto field =
      std::make_unique<TStringField>(address.id, address.index, count, QvPlatform::Decode(label));
  TakeValues(line, field.get());
  cursor.SkipLine();
  *position = cursor.At();
  return field;
}

std::unique_ptr<Tree> TStringTree::CreateSubtree(std::string_view text, std::size_t* position) {
  auto subtree = CreateSubtree(0, 0, {});
  static_cast<TStringTree*>(subtree.get())->ReadText(text, position);
  return subtree;
}

void TStringTree::ReadText(std::string_view text, std::size_t* position) {
  Cursor cursor(text, *position);
  const int depth = cursor.CountTabs(kMaxTreeDepth);
  if (depth > kMaxTreeDepth) cursor.Fail("the text is too deep");
  cursor.Skip(static_cast<std::size_t>(depth));
  const Address address = TakeAddress(&cursor);
  Id = address.id;
  Index = address.index;
  Label = cursor.PeekLine();
  // Nothing is read that could not be written.
  if (HasLineBreak(Label.View())) cursor.Fail("the label of a subtree has a line break");
  cursor.SkipLine();
  while (true) {
    if (cursor.AtEnd()) cursor.Fail("a closing line is missing");
    const int tabs = cursor.CountTabs(depth + 1);
    if (tabs > depth + 1) cursor.Fail("a line stands too deep");
    std::size_t at = cursor.At();
    if (tabs > depth) {
      if (tabs > kMaxTreeDepth) cursor.Fail("the text is too deep");
      Subtrees.push_back(CreateSubtree(text, &at));
    } else {
      at += static_cast<std::size_t>(tabs);
      const std::string_view rest = text.substr(at);
      if (rest.starts_with('\n') || rest.starts_with("\r\n")) {
        *position = at + (rest.front() == '\n' ? 1 : 2);
        return;
      }
      if (tabs < depth) cursor.Fail("a field stands at the depth of another node");
      Fields.push_back(CreateField(text, &at));
    }
    cursor.Skip(at - cursor.At());
  }
}

std::string WriteTreeText(const TStringTree* tree) {
  std::string text(PutNode(*tree, 0, BoundSink()).Size(), '\0');
  const char* end = PutNode(*tree, 0, BufferSink(text.data())).End();
  text.resize(static_cast<std::size_t>(end - text.data()));
  return text;
}

void ReadTreeText(std::string_view text, TStringTree* tree) {
  const std::string_view body = WithoutByteOrderMark(text);
  TStringTree read;
  // The depth that is left is that below the node that takes the content.
  read.Parent = tree->Parent;
  std::size_t position = 0;
  read.ReadText(body, &position);
  const std::string_view tail = body.substr(position);
  if (!tail.empty() && tail != std::string_view("\0", 1))
    Cursor(body, position).Fail("something stands behind the end of the tree");
  tree->Adopt(&read);
}

bool InsertFromString(const std::string& text, TStringTree* tree) {
  TStringTree read;
  read.Parent = tree->Parent;
  try {
    ReadTreeText(text, &read);
  } catch (const TreeFormatError&) {
    return false;
  }
  MergeTree(&read, tree);
  return true;
}

}  // namespace QvCommonUtils
