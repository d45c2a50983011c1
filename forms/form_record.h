#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "forms/form_conflict.h"
#include "forms/form_description.h"
#include "forms/record_content.h"
#include "processors/data_processor.h"

namespace QvRefSystem {

/// Why a control's content is refused.
enum class FormRefusal : unsigned char {
  kEmpty,     ///< a text is empty
  kNoNumber,  ///< what was typed is no number
  kZero,      ///< a number is 0
  kNotChosen  ///< a reference has no object, or a list no chosen item
};

/// What a row of a form holds, by its kind: text; number; a reference's key, with the object's name
/// as text; the place in a list.
struct FormValue {
  /// kText and kMemo: the content; kReference: the name of the object.
  std::string text;
  /// kNumber: the number.
  double number = 0;
  /// kNumber: whether the text that was typed is one.
  bool isNumber = true;
  /// kReference: the key of the object, 0 for none; kList: the place of the item, -1 for none.
  int key = 0;
};

/// The content of one form between a table and its dialog: filled from the current record or with
/// the defaults of a new one, checked by the rules of the form, and written back.
///
/// It keeps what the record said when it was loaded, so that nothing which somebody else has stored
/// since is overwritten unseen.
class FormRecord {
 public:
  /// Both must outlive this. The processor is that of the objects that the form edits.
  FormRecord(TQvRfDataProcessor& processor, const FormDescription& form);

  /// Copies the current record. A reference is located on its processor; one that is not there
  /// becomes 0, unless its row keeps it.
  void Load();
  /// Copies the current record as it stands now; what Store compares with is still what Load found.
  void LoadAgain();
  /// What stood in the store at the last conflict is known to the user, and may be overwritten.
  void Accept() { loaded_ = found_; }
  /// Empty texts, and the keys that a new record begins with.
  void Clear();
  /// References to records that have been removed since are lost as on loading, and names are read
  /// anew; one that was emptied stays empty. Moves no cursor.
  void RefreshReferences();
  /// Makes the record that is current on the row's processor the one referred to.
  void TakeCurrent(std::size_t row);

  /// Gives a reference that has no key that of the object last used.
  void NeedKey(std::size_t row);

  /// What the row of that place holds. Throws std::out_of_range for a place behind the last row.
  [[nodiscard]] FormValue& At(std::size_t row) { return values_.at(row); }
  /// What the row of that control holds. Throws std::out_of_range for a control that the form does
  /// not have.
  [[nodiscard]] FormValue& At(std::string_view control) {
    return values_.at(RowOf(form_, control));
  }
  /// Why the row's rule refuses what it holds; nothing if it does not.
  [[nodiscard]] std::optional<FormRefusal> Check(std::size_t row) const;

  /// What a store does beside the form's own rows. All may be empty.
  struct Extras {
    /// Writes more fields of the pending record.
    std::function<void(QvPlatform::TQvDataSet&)> fields;
    /// Writes what belongs to the record of that key, in the same transaction.
    std::function<void(int key)> beside;
    /// Tables that `beside` writes to.
    std::vector<QvPlatform::TQvDataSet*> tables;
  };
  /// Appends a record, or changes the one that was loaded, posts it and makes it current; its key.
  /// Throws FormConflict where somebody else has changed what the record says, other than its
  /// stamps, and StaleRecordError where he has removed an object that the form refers to; the form
  /// has lost that reference then. On failure cancels, undoes what `beside` has written, and
  /// throws.
  int Store(bool append, const Extras& extras);

  /// The form whose content this is.
  [[nodiscard]] const FormDescription& Form() const { return form_; }
  /// The processor of the objects that a row refers to. Throws InvalidTypeError if there is none.
  [[nodiscard]] TQvRfDataProcessor& ReferredProcessor(const FormRow& row) const;

 private:
  void LoadReference(std::size_t row);
  void LoseReference(std::size_t row);
  void LoadValues();
  void WriteRows();
  void WriteStamps(bool append);
  void RequireUnchanged();
  void RequireReferences();
  [[nodiscard]] std::vector<QvPlatform::TQvDataSet*> TablesOf(const Extras& extras) const;

  TQvRfDataProcessor& processor_;
  const FormDescription& form_;
  std::vector<FormValue> values_;
  /// Key of the record that was loaded, 0 for a new one, and what it said.
  int key_ = 0;
  RecordContent loaded_;
  /// What stood in the store at the last conflict.
  RecordContent found_;
};

}  // namespace QvRefSystem
