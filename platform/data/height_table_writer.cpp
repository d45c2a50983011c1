#include "platform/data/height_table_writer.h"

#include <locale.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>
#include <stdexcept>
#include <utility>
#include <vector>

#include "platform/data/height_table_numbers.h"
#include "platform/data/height_table_reader.h"

namespace QvRefSystem {

namespace {

using Table = THeightTable;

/// What stands behind each number but the last one of a head, behind each value, and behind each
/// line.
constexpr char kBehindHeadNumber = ' ';
constexpr char kBehindValue = '\t';
constexpr char kBehindLine = '\n';

/// The notation of this thread is that of C while one lives.
class CNotation {
 public:
  CNotation() : c_(newlocale(LC_ALL_MASK, "C", nullptr)) {
    if (c_ == nullptr) throw std::runtime_error("there is no C locale");
    before_ = uselocale(c_);
  }
  ~CNotation() {
    uselocale(before_);
    freelocale(c_);
  }
  CNotation(const CNotation&) = delete;
  CNotation& operator=(const CNotation&) = delete;

 private:
  locale_t c_;
  locale_t before_ = nullptr;
};

std::size_t SkipDigits(std::string_view format, std::size_t at) {
  return std::min(format.find_first_not_of("0123456789", at), format.size());
}

/// Whether printf takes exactly one double for the format. Widths of more than four digits are
/// refused as well.
bool IsForOneDouble(std::string_view format) {
  constexpr std::size_t kWidthDigits = 4;
  int conversions = 0;
  for (std::size_t at = format.find('%'); at < format.size(); at = format.find('%', at)) {
    if (format.substr(at + 1).starts_with('%')) {
      at += 2;
      continue;
    }
    const std::size_t width = std::min(format.find_first_not_of("-+ #0", at + 1), format.size());
    std::size_t stop = SkipDigits(format, width);
    if (stop - width > kWidthDigits) return false;
    if (stop < format.size() && format[stop] == '.') {
      const std::size_t decimals = stop + 1;
      stop = SkipDigits(format, decimals);
      if (stop - decimals > kWidthDigits) return false;
    }
    if (stop < format.size() && format[stop] == 'l') ++stop;
    if (stop >= format.size() || !std::strchr("aAeEfFgG", format[stop])) return false;
    ++conversions;
    at = stop + 1;
  }
  return conversions == 1;
}

/// Any format, through printf.
void AppendNumber(double value, const char* format, std::string* text) {
  char usual[512];
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
  // IsForOneDouble has looked at the format.
  const auto length = static_cast<std::size_t>(std::snprintf(usual, sizeof usual, format, value));
  if (length < sizeof usual) {
    text->append(usual, length);
    return;
  }
  const std::size_t before = text->size();
  text->resize(before + length + 1);
  std::snprintf(text->data() + before, length + 1, format, value);
#pragma GCC diagnostic pop
  text->resize(before + length);
}

bool AppendHeader(const Table& table, const char* format, std::string* text) {
  const double numbers[] = {table.South(), table.North(), table.West(),
                            table.East(),  table.CellY,   table.CellX};
  if (!std::ranges::all_of(numbers, [](double number) { return std::isfinite(number); })) {
    return false;
  }
  for (const double number : numbers) {
    AppendNumber(number, format, text);
    text->push_back(kBehindHeadNumber);
  }
  text->back() = kBehindLine;
  return true;
}

/// Three decimals. They are put together in a piece of memory that stays in the cache: text in the
/// string itself would have to be cleared first.
class FastRow {
 public:
  explicit FastRow(std::string* text) : text_(text), piece_(kRun * kValueSpace) {}

  void Append(const double* values, std::size_t count) {
    while (count != 0) {
      const std::size_t run = std::min(count, kRun);
      text_->append(piece_.data(), detail::WriteThreeDecimals(values, run, piece_.data()));
      values += run;
      count -= run;
    }
    text_->push_back(kBehindLine);
  }

 private:
  static constexpr std::size_t kRun = 512;
  static constexpr std::size_t kValueSpace = detail::kThreeDecimalsSpace + 1;
  std::string* text_;
  std::vector<char> piece_;
};

class AnyRow {
 public:
  AnyRow(const char* format, std::string* text) : format_(format), text_(text) {}

  void Append(const double* values, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
      AppendNumber(values[i], format_, text_);
      text_->push_back(kBehindValue);
    }
    text_->push_back(kBehindLine);
  }

 private:
  const char* format_;
  std::string* text_;
};

/// Zero times a number is zero, but for those that are not finite; their sum tells it of a row
/// without a question for each value.
bool IsFinite(const double* values, std::size_t count) {
  double sums[8] = {};
  std::size_t i = 0;
  for (; i + 8 <= count; i += 8) {
    for (std::size_t lane = 0; lane < 8; ++lane)
      sums[lane] += values[i + lane] * 0;
  }
  for (; i < count; ++i)
    sums[0] += values[i] * 0;
  return std::ranges::all_of(sums, [](double sum) { return sum == 0; });
}

template <typename Row>
bool AppendRows(const Table& table, int (*next)(), Row row) {
  const std::size_t width = table.CountX;
  const std::uint32_t bundle = std::min(table.RowsAtATime(), table.CountY);
  std::vector<double> values(bundle * width);
  for (std::uint32_t done = 0; done < table.CountY;) {
    const std::uint32_t rows = std::min(bundle, table.CountY - done);
    table.GetRows(table.CountY - 1 - done, {values.data(), rows * width});
    if (!IsFinite(values.data(), rows * width)) return false;
    for (std::uint32_t i = 0; i < rows; ++i) {
      row.Append(values.data() + i * width, width);
      if (++done < table.CountY && next != nullptr && next() != 0) return false;
    }
  }
  return true;
}

/// Room for the text with three decimals, so that it is never moved. The limits of the values tell
/// the longest one; pages that stay unused cost nothing.
void ReserveText(const Table& table, std::string* text) {
  constexpr std::size_t kUsual = 24;
  const double widest = std::max(std::fabs(table.MinValue), std::fabs(table.MaxValue));
  std::size_t length = kUsual;
  if (widest < 1e9) {
    char number[detail::kThreeDecimalsSpace];
    length = static_cast<std::size_t>(detail::WriteThreeDecimals(widest, number) - number) +
             static_cast<std::size_t>(table.MinValue < 0);
  }
  const std::size_t lines = table.CountY;
  text->reserve(text->size() + lines * table.CountX * (length + 1) + lines);
}

bool Format(const Table& table, const char* headerFormat, const char* valueFormat,
            const TProgressInterface* progress, std::string* text) {
  if (table.CountX == 0 || table.CountY == 0) return false;
  if (!IsForOneDouble(headerFormat) || !IsForOneDouble(valueFormat)) return false;
  if (progress != nullptr && progress->SetMax != nullptr) {
    constexpr std::uint32_t kMost = std::numeric_limits<int>::max();
    progress->SetMax(static_cast<int>(std::min(table.CountY, kMost)));
  }
  const CNotation notation;
  if (!AppendHeader(table, headerFormat, text)) return false;
  int (*next)() = progress != nullptr ? progress->Next : nullptr;
  const std::string_view format = valueFormat;
  if (format != kHeightValueFormat && format != "%.3f") {
    return AppendRows(table, next, AnyRow(valueFormat, text));
  }
  ReserveText(table, text);
  return AppendRows(table, next, FastRow(text));
}

}  // namespace

bool FormatHeightTable(const Table* table, std::string* text, const char* headerFormat,
                       const char* valueFormat, TProgressInterface* progress) {
  if (text == nullptr) return false;
  text->clear();
  if (table == nullptr || headerFormat == nullptr || valueFormat == nullptr) return false;
  bool done = false;
  try {
    done = Format(*table, headerFormat, valueFormat, progress, text);
  } catch (...) {
    // Nothing is raised past this border; the callers turn it into their own message.
  }
  if (!done) std::string().swap(*text);
  return done;
}

std::optional<std::string> HeightTableInLines(std::string_view text) {
  HeightTableHeader header;
  if (!ReadHeightTableHeader(text, &header)) return std::nullopt;
  const std::size_t rowLength = header.counts.x;
  std::string lines;
  lines.reserve(text.size() + std::min<std::size_t>(header.counts.y, text.size()));
  std::size_t taken = 0;
  const char* const end = text.data() + text.size();
  for (const char* next = text.data();;) {
    next = std::find_if_not(next, end, detail::IsSeparator);
    if (next == end) break;
    const char* const token = std::exchange(next, std::find_if(next, end, detail::IsSeparator));
    lines.append(token, next);
    if (++taken <= kHeightHeaderNumbers) {
      lines.push_back(taken < kHeightHeaderNumbers ? kBehindHeadNumber : kBehindLine);
    } else {
      lines.push_back(kBehindValue);
      if ((taken - kHeightHeaderNumbers) % rowLength == 0) lines.push_back(kBehindLine);
    }
  }
  if (taken < kHeightHeaderNumbers + rowLength) return std::nullopt;
  return lines;
}

}  // namespace QvRefSystem
