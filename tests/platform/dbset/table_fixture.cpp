#include "tests/platform/dbset/table_fixture.h"

#include <stdexcept>

#include "platform/dbset/fixed_record_file.h"
#include "platform/storage/file_stream.h"
#include "platform/storage/resource_session.h"

namespace platform_tests {

using namespace QvPlatform;

TQvDbHeader SampleHeader() {
  TQvDbHeader header;
  header.AddField("AUTOKEY", 3, 2, 255);
  header.AddField("CODE", 3, 1, 255);
  header.AddField("NAME", 1, 1, 64);
  header.AddField("NOTE", 1, 0, 255);
  header.AddField("FACTOR", 2, 0, 255);
  header.AddField("SPARE", 3, 0, 255);
  return header;
}

void MakeTable(const std::string& name, QvDataBufferType type, const TQvDbHeader& header) {
  std::unique_ptr<TQvStream> stream = std::make_unique<TQvFileStream>();
  if (type == QvDataBufferType::kResource) stream = std::make_unique<TQvResourceSession>();
  if (!stream->Open(name, QvOpenMode::kCreate)) throw std::runtime_error(stream->LastError());
  TFixedRecordFile file(header, header.GetRecordSize());
  if (!file.CreateNew(stream.get(), true)) throw std::runtime_error("no table could be made");
  static_cast<void>(stream.release());
  file.Close();
}

Table::Table(const std::string& name, QvDataBufferType type) : set(buffer) {
  buffer.StreamName = name;
  buffer.SetDataBufferType(type);
  buffer.SetSortField(kName, false, true);
  set.Open();
}

int Table::Add(const std::string& name, int code) {
  set.Append();
  set.FieldByName("NAME").SetString(name);
  set.FieldByName("CODE").SetInteger(code);
  set.Post();
  return set.FieldByName("AUTOKEY").AsInteger();
}

int Table::Key(const std::string& name) const {
  return set.FindFirst({RowMatch::Text(kName, name)}).GetInteger(kKey);
}

void Table::GoTo(int key) {
  if (!set.MoveTo(set.FindFirst({RowMatch::Integer(kKey, key)}))) {
    throw std::runtime_error("no record has the key " + std::to_string(key));
  }
}

void Table::Rename(int key, const std::string& name) {
  GoTo(key);
  Change(kName, name);
}

RowView Table::Change(int field, const std::string& value) {
  set.Edit();
  set.Fields(field).SetString(value);
  return set.Post();
}

RowView Table::Change(int field, int value) {
  return Change(field, std::to_string(value));
}

std::vector<std::string> Table::Names() {
  std::vector<std::string> names;
  for (set.First(); !set.Eof(); set.Next())
    names.push_back(set.Fields(kName).AsString());
  return names;
}

void Table::Reopen() {
  set.Close();
  buffer.Close();
  set.Open();
}

namespace {

std::string MadeTable(const std::string& path, const TQvDbHeader& header) {
  MakeTable(path, QvDataBufferType::dtFileStream, header);
  return path;
}

}  // namespace

FileTable::FileTable(const TQvDbHeader& header) : Table(MadeTable(Path("t.dat"), header)) {}

}  // namespace platform_tests
