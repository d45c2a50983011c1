#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "forms/form_description.h"
#include "processors/data_processor.h"

namespace QvRefSystem {

/// Why a control's content is refused.
enum class FormRefusal : unsigned char { kEmpty, kNoNumber, kZero, kNotChosen };

/// What a row of a form holds, by its kind: text; number; a reference's key, with the object's name
/// as text; the place in a list.
struct FormValue {
  std::string text;
  double number = 0;
  /// kNumber: whether the text that was typed is one.
  bool isNumber = true;
  int key = 0;
};

/// The content of one form between a table and its dialog: filled from the current record or with
/// the defaults of a new one, checked by the rules of the form, and written back.
class FormRecord {
 public:
  FormRecord(TQvRfDataProcessor& processor, const FormDescription& form);

  /// Copies the current record. A reference is located on its processor; one that is not there
  /// becomes 0, unless its row keeps it.
  void Load();
  /// Empty texts, and the keys that a new record begins with.
  void Clear();
  /// References to records that have been removed since are lost as on loading, and names are read
  /// anew; one that was emptied stays empty. Moves no cursor.
  void RefreshReferences();
  /// Makes the record that is current on the row's processor the one referred to.
  void TakeCurrent(std::size_t row);

  /// Gives a reference that has no key that of the object last used.
  void NeedKey(std::size_t row);

  [[nodiscard]] FormValue& At(std::size_t row) { return values_.at(row); }
  /// Throws std::out_of_range for a control that the form does not have.
  [[nodiscard]] FormValue& At(std::string_view control) {
    return values_.at(RowOf(form_, control));
  }
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
  /// Appends a record, or changes the current one, posts it and opens the table anew on it. On
  /// failure cancels, undoes what `beside` has written, and throws.
  void Store(bool append, const Extras& extras);

  [[nodiscard]] const FormDescription& Form() const { return form_; }
  /// The processor of the objects that a row refers to. Throws InvalidTypeError if there is none.
  [[nodiscard]] TQvRfDataProcessor& ReferredProcessor(const FormRow& row) const;

 private:
  void LoadReference(std::size_t row);
  void LoseReference(std::size_t row);
  void WriteRows();
  void WriteStamps(bool append);

  TQvRfDataProcessor& processor_;
  const FormDescription& form_;
  std::vector<FormValue> values_;
};

}  // namespace QvRefSystem
