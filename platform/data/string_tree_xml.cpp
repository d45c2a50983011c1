#include "platform/data/string_tree_xml.h"

#include "platform/xini/xini_reader.h"
#include "platform/xini/xini_writer.h"

namespace QvCommonUtils {

using Field = TDataField<std::string>;
using Tree = TDataTree<std::string>;

namespace {

constexpr std::string_view kTag = "tag";
constexpr std::string_view kIndex = "idx";
constexpr std::string_view kLabel = "hdr";
constexpr std::string_view kFields = "field";
constexpr std::string_view kSubtrees = "subtree";
constexpr std::string_view kData = "data";

bool WriteHead(TQvXIniWriter* writer, int id, int index, std::string_view label) {
  return writer->WriteInt(kTag, id) && writer->WriteInt(kIndex, index) &&
         writer->WriteString(kLabel, label);
}

bool WriteFields(const TPtrVector<Field>& fields, TQvXIniWriter* writer) {
  if (!writer->EnterSection(kFields)) return false;
  for (const auto& field : fields) {
    if (field->IsNote()) continue;
    writer->SetCompact(true);
    const bool written =
        writer->EnterSection({}) && field->WriteIni(writer) && writer->ExitSection();
    writer->SetCompact(false);
    if (!written) return false;
  }
  return writer->ExitSection();
}

bool WriteSubtrees(const TPtrVector<Tree>& subtrees, TQvXIniWriter* writer) {
  if (!writer->EnterSection(kSubtrees)) return false;
  for (const auto& subtree : subtrees) {
    if (!writer->EnterSection({}) || !subtree->WriteIni(writer) || !writer->ExitSection())
      return false;
  }
  return writer->ExitSection();
}

struct Head {
  int id;
  int index;
  std::string label;
};

int ReadNamedInt(TQvXIniReader* reader, std::string_view name) {
  reader->FindFE(name);
  return reader->ReadIntE();
}

Head ReadHead(TQvXIniReader* reader) {
  const int id = ReadNamedInt(reader, kTag);
  const int index = ReadNamedInt(reader, kIndex);
  reader->FindFE(kLabel);
  return {id, index, reader->ReadStringE()};
}

/// Calls `read` within each unnamed member of the named section, if there is such a section.
template <typename Read>
void ForEachMember(TQvXIniReader* reader, std::string_view name, const Read& read) {
  if (!reader->FindF(name)) return;
  reader->EnterSectionE();
  for (unsigned i = 0; reader->Exists(i); ++i) {
    reader->EnterSectionE(i);
    read(i);
    reader->ExitSectionE();
  }
  reader->ExitSectionE();
}

void WriteDocument(const TStringTree* tree, TQvXIniWriter* writer) {
  if (!tree->WriteIni(writer)) throw TreeFormatError("the tree is too deep for its XML form");
}

}  // namespace

bool Field::WriteIni(TQvXIniWriter* writer) const {
  if (IsNote()) return true;
  writer->SetCompact(true);
  if (!WriteHead(writer, Id, Index, Label.View()) || !writer->EnterSection(kData)) return false;
  for (int i = 0; i < Count; ++i) {
    if (!writer->WriteString({}, GetValueText(i))) return false;
  }
  return writer->ExitSection();
}

bool Tree::WriteIni(TQvXIniWriter* writer) const {
  writer->SetCompact(true);
  const bool written = WriteHead(writer, Id, Index, Label.View());
  writer->SetCompact(false);
  return written && (Fields.empty() || WriteFields(Fields, writer)) &&
         (Subtrees.empty() || WriteSubtrees(Subtrees, writer));
}

std::unique_ptr<Field> TStringTree::CreateField(TQvXIniReader* reader, unsigned) {
  const Head head = ReadHead(reader);
  if ((head.id | head.index) < 0)
    throw TreeFormatError(reader->Path() + ": a field has a negative number");
  reader->FindFE(kData);
  reader->EnterSectionE();
  const unsigned count = reader->Count();
  auto field =
      std::make_unique<TStringField>(head.id, head.index, static_cast<int>(count), head.label);
  for (unsigned i = 0; i < count; ++i) {
    field->SetValueText(reader->ReadStringE(i), static_cast<int>(i));
  }
  reader->ExitSectionE();
  return field;
}

std::unique_ptr<Tree> TStringTree::CreateSubtree(TQvXIniReader* reader, unsigned) {
  auto subtree = CreateSubtree(0, 0, {});
  static_cast<TStringTree*>(subtree.get())->ReadIni(reader);
  return subtree;
}

void TStringTree::ReadIni(TQvXIniReader* reader) {
  const Head head = ReadHead(reader);
  Id = head.id;
  Index = head.index;
  Label = head.label;
  ForEachMember(reader, kFields, [&](unsigned i) { Fields.push_back(CreateField(reader, i)); });
  ForEachMember(reader, kSubtrees,
                [&](unsigned i) { Subtrees.push_back(CreateSubtree(reader, i)); });
}

void WriteTreeXml(const TStringTree* tree, QvPlatform::TQvStream* stream) {
  TQvXIniWriter writer(stream);
  WriteDocument(tree, &writer);
  writer.Finish();
}

std::string WriteTreeXml(const TStringTree* tree) {
  TQvXIniWriter writer;
  WriteDocument(tree, &writer);
  return writer.TakeDocument();
}

void ReadTreeXml(TQvXIniReader* reader, TStringTree* tree) {
  TStringTree read;
  read.Parent = tree->Parent;
  try {
    read.ReadIni(reader);
  } catch (const QvPlatform::XIniError& error) {
    throw TreeFormatError(error.what());
  }
  tree->Adopt(&read);
}

namespace {

/// `Source` is what a reader is made from.
template <typename Source>
void ReadDocument(Source source, TStringTree* tree) {
  try {
    TQvXIniReader reader(source);
    ReadTreeXml(&reader, tree);
  } catch (const QvPlatform::XIniError& error) {
    throw TreeFormatError(error.what());
  }
}

}  // namespace

void ReadTreeXml(QvPlatform::TQvStream* stream, TStringTree* tree) {
  ReadDocument(stream, tree);
}

void ReadTreeXml(std::string_view document, TStringTree* tree) {
  ReadDocument(document, tree);
}

}  // namespace QvCommonUtils
