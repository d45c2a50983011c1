#pragma once

#include <array>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "database/object_types.h"
#include "database/storage_files.h"
#include "database/table_catalogue.h"
#include "platform/dbset/data_set.h"
#include "platform/dbset/data_source.h"
#include "platform/ui/user_interface.h"

namespace QvRefSystem {

class TQvRfDataProcessor;
#define REFFRAME_PROCESSOR_CLASS(stem, type) class TQvRf##stem##DataProcessor;
REFFRAME_OBJECT_TYPES(REFFRAME_PROCESSOR_CLASS)
#undef REFFRAME_PROCESSOR_CLASS
class TdatamoduleQvRfData;

/// Makes the processors over an open data module, sets its processor pointers, and returns what
/// owns them. The data module itself knows none of their rules.
using ProcessorMaker = std::function<std::shared_ptr<void>(TdatamoduleQvRfData&)>;

/// Values of DialogMode.
enum : signed char {
  /// Lists for choosing change nothing, and what one object alone uses is made and goes with it.
  kSimpleMode = 1,
  /// Each object is made, changed and removed by itself.
  kFullMode = 2
};

/// Owns all tables of one database and the processors over them. It opens and closes them and
/// knows where they lie; it holds no rules of what they mean.
///
/// Not thread-safe: one thread works on a database.
class TdatamoduleQvRfData : public QvPlatform::TComponent {
 public:
  /// Opens nothing. `ui`, by which failures are told, must outlive this.
  TdatamoduleQvRfData(QvPlatform::TUserInterface& ui, ProcessorMaker makeProcessors);
  ~TdatamoduleQvRfData() override;
  TdatamoduleQvRfData(const TdatamoduleQvRfData&) = delete;
  TdatamoduleQvRfData& operator=(const TdatamoduleQvRfData&) = delete;

// Each table has a buffer, a data set and a source for grids, named by the table's stem.
#define REFFRAME_TABLE_MEMBERS(stem)                   \
  QvPlatform::TQvDataBuffer databuf##stem;             \
  QvPlatform::TQvDataSet dataset##stem{databuf##stem}; \
  QvPlatform::TDataSource datasrc##stem{&dataset##stem};
  REFFRAME_TABLES(REFFRAME_TABLE_MEMBERS)
#undef REFFRAME_TABLE_MEMBERS

  /// Whether the database is a resource container.
  bool ResourceForm = false;
// The processor of each object type, named by the type's stem. Owned through the processor maker's
// result; null while closed.
#define REFFRAME_PROCESSOR_MEMBER(stem, type) TQvRf##stem##DataProcessor* stem##Processor = nullptr;
  REFFRAME_OBJECT_TYPES(REFFRAME_PROCESSOR_MEMBER)
#undef REFFRAME_PROCESSOR_MEMBER
  /// The same processors by the codes of their object types; null for a code that is none.
  std::array<TQvRfDataProcessor*, kObjectTypeCodes> Processors{};
  /// kSimpleMode or kFullMode, as OpenDatabase was told.
  signed char DialogMode = kFullMode;
  /// Whether the lists offer the exchange of objects with files.
  bool ShowImportExport = false;
  /// Folder with trailing separator, or container name ending in ".".
  std::string DatabasePath;
  /// True until OpenDatabase has succeeded.
  bool NotActive = true;
  /// Colour of a refused control, 0x00BBGGRR; 255 is pure red.
  int ErrorColour = 255;

  /// Opens all tables, makes the two that may be missing, and creates the processors. Failures are
  /// told to the user, but for an empty DatabasePath and a missing table that is never made.
  [[nodiscard]] bool OpenDatabase(const std::string& path, signed char dialogMode,
                                  bool resourceForm);
  /// Closes all tables; the processors are gone, and their pointers null. Closing twice is no
  /// fault.
  void CloseDatabase();
  /// Whether another program has changed the database since it was read. Costs the reading of a
  /// counter for each table. False for one that is not open.
  [[nodiscard]] bool HasChanged();
  /// Brings all tables up to one moment of the store, if it has changed; a table that could not be
  /// read earlier is opened again. Cursors stay on their records. Does nothing, and is to be called
  /// again later, while controls are disabled or a change is pending. Whether anything was read.
  /// Throws what the tables throw.
  bool Refresh();
  /// Where the tables lie, with the separator behind. The database must be open or have been.
  [[nodiscard]] std::string GetDatabaseRoot() const;
  /// Where height files lie, with the separator behind.
  [[nodiscard]] std::string GetHeightsPrefix() const;
  /// Where copies of tables go, with the separator behind.
  [[nodiscard]] std::string GetBackupPrefix() const;
  /// Whether the reference system table has the fields for heights.
  [[nodiscard]] bool HasVerticalFields();
  /// Brings a reference system table without the fields for heights up to date: a copy goes to the
  /// backups, and a table in the current layout with all records under their old keys takes its
  /// place, open. On failure the old table stands as it was; throws what the tables throw.
  [[nodiscard]] bool ConvertDatabase();
  /// Copies a table to the backups under a name that is free there. The name of the copy, or "" if
  /// it could not be made.
  [[nodiscard]] std::string BackupTable(const std::string& name, bool resourceForm) const;

  /// The data set of a table. Throws std::out_of_range for kNone.
  [[nodiscard]] QvPlatform::TQvDataSet& DataSet(TableId id);
  /// The buffer of a table. Throws std::out_of_range for kNone.
  [[nodiscard]] QvPlatform::TQvDataBuffer& DataBuffer(TableId id);
  /// The source of a table for grids. Throws std::out_of_range for kNone.
  [[nodiscard]] QvPlatform::TDataSource& Source(TableId id);
  /// The user to whom failures are told and who is asked.
  [[nodiscard]] QvPlatform::TUserInterface& Ui() {
    return ui_;
  }
  /// Why the last OpenDatabase failed, in the words of what refused; "" where there is no more to
  /// say than the user was told.
  [[nodiscard]] const std::string& LastError() const {
    return lastError_;
  }
  /// The tables that objects are written to, as one write group takes them.
  [[nodiscard]] std::vector<QvPlatform::TQvDataSet*> WritableTables();
  /// All tables that a database opens.
  [[nodiscard]] std::vector<QvPlatform::TQvDataSet*> OpenedTables();

 private:
  [[nodiscard]] bool OpenTables(std::string* currentTable);
  void OpenTable(const TableSpec& table);
  void ReportOpening(const std::string& path, const std::string& currentTable,
                     const std::string& reason);
  void WarnOfOlderTables();
  [[nodiscard]] std::string CopyToBackups(const std::string& name, bool resourceForm) const;
  void DropProcessors();

  QvPlatform::TUserInterface& ui_;
  ProcessorMaker makeProcessors_;
  std::shared_ptr<void> processors_;
  std::string lastError_;
};

/// The one data module of the process between start and stop of the editor; null while there is
/// none. For the outer edge (editor, dialogs, hosts): core code gets its data module by reference.
extern TdatamoduleQvRfData* datamoduleQvRfData;

}  // namespace QvRefSystem
