#include "vertical/working_heights.h"

#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <filesystem>
#include <set>
#include <utility>
#include <vector>

#include "vertical/vertical_processor.h"

namespace QvRefSystem {

using QvPlatform::RowMatch;
using QvPlatform::TQvDataSet;
using QvPlatform::TQvWriteGroup;

namespace {

constexpr std::string_view kNote = "worked on by";

/// What dialogs of this program work on now.
std::set<std::pair<const TdatamoduleQvRfData*, int>>& WorkedOn() {
  static std::set<std::pair<const TdatamoduleQvRfData*, int>> keys;
  return keys;
}

/// The machine, and what the numbers of its processes count in.
std::string ThisMachine() {
  std::array<char, 256> name{};
  if (gethostname(name.data(), name.size() - 1) != 0) return "?";
  std::error_code none;
  const auto space = std::filesystem::read_symlink("/proc/self/ns/pid", none).string();
  return std::string(name.data()) + ' ' + space + ' ';
}

bool IsRunning(const std::string& process) {
  const int number = std::atoi(process.c_str());
  return number <= 0 || kill(number, 0) == 0 || errno != ESRCH;
}

}  // namespace

TQvRfVerticalRefSystemDataProcessor& WorkingHeights::Heights() const {
  return *data_.VerticalRefSystemProcessor;
}

void WorkingHeights::Mark(int key, std::string_view note) {
  Heights().DataSet->SetNote(key, kNote, note);
}

void WorkingHeights::Forget() {
  WorkedOn().erase({&data_, std::exchange(key_, 0)});
}

bool WorkingHeights::Copy(int key) {
  Forget();
  if (!Heights().LocateKey(key)) return false;
  TQvWriteGroup group(data_.WritableTables());
  if (!Heights().DuplicateCurrent()) return false;
  Take(Heights().GetCurrentKey());
  group.Commit();
  return true;
}

void WorkingHeights::Take(int key) {
  Forget();
  key_ = key;
  WorkedOn().emplace(&data_, key);
  Mark(key, ThisMachine() + std::to_string(getpid()));
}

void WorkingHeights::Keep() {
  if (key_ != 0 && Heights().RowOfKey(key_)) Mark(key_, "");
}

void WorkingHeights::Drop() {
  const int key = key_;
  Forget();
  if (key != 0 && Heights().LocateKey(key)) (void)Heights().DeleteRecord(nullptr);
}

bool WorkingHeights::IsUsed(int key) const {
  TQvDataSet& systems = data_.datasetRefSystem;
  const int column = systems.FieldByName("VERT_SYSTEM_AUTOKEY").GetIndex();
  return !systems.FindAll({RowMatch::Integer(column, key)}, QvPlatform::RowScope::kAll).empty();
}

bool WorkingHeights::IsLeft(int key, const std::string& note) const {
  const std::string machine = ThisMachine();
  if (!note.starts_with(machine)) return false;
  const std::string process = note.substr(machine.size());
  if (process != std::to_string(getpid())) return !IsRunning(process);
  return !WorkedOn().contains({&data_, key});
}

void WorkingHeights::DropLeft() {
  const int current = Heights().GetCurrentKey();
  const ControlsGuard quiet(*Heights().DataSet);
  std::vector<int> left;
  for (int place = 0; place < Heights().DataSet->RecordCount(); ++place) {
    const int key = Heights().KeyOf(Heights().DataSet->Row(place));
    const auto note = Heights().DataSet->Note(key, kNote);
    if (note && !note->empty() && IsLeft(key, *note)) left.push_back(key);
  }
  try {
    if (left.empty()) return;
    TQvWriteGroup group(data_.WritableTables());
    for (const int key : left)
      IsUsed(key) ? Mark(key, "") : Heights().Remove(key);
    group.Commit();
  } catch (const std::runtime_error&) {
    // The disk may still be full: the next dialog tries again.
  }
  Heights().LocateKey(current);
}

}  // namespace QvRefSystem
