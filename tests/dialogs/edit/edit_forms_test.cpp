// What all edit dialogs have in common, over all descriptions: refusals, the round trip of every
// row, and the rules of who is current, locked and stamped.

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <algorithm>

#include "tests/dialogs/edit/edit_dialog_fixture.h"

namespace refframe_tests {
namespace {

using QvRefSystem::EditStamp;
using QvRefSystem::FormDescription;
using QvRefSystem::FormDescriptions;
using QvRefSystem::FormRow;
using QvRefSystem::LeadKind;
using QvRefSystem::RowKind;
using QvRefSystem::Rule;
using QvRefSystem::TableId;
using QvRefSystem::TformQvRfEdit;
using QvRefSystem::TformQvRfSelector;
using enum QvRefSystem::TObjectType;

class EditForms : public EditTest {
 protected:
  /// Runs the dialog on the current record, or on a new one, with what the user does in it.
  template <typename Act>
  bool Run(const FormDescription& form, bool makeNew, Act act) {
    ScreenUser user;
    user.In<TformQvRfEdit>(act);
    return makeNew ? FormOf(form).CreateNew() : FormOf(form).EditCurrent();
  }
};

TEST_F(EditForms, DescriptionsSayWhatTheTablesHave) {
  for (const FormDescription* form : FormDescriptions()) {
    const auto& table = TableOf(QvRefSystem::DescriptorOf(form->object).table);
    for (const FormRow& row : form->rows) {
      if (*row.column == 0) continue;
      if (row.object == kMapProjectionType) {
        EXPECT_STREQ(row.column, "TYPE") << "the key of a type";
      }
      const auto field = std::ranges::find(table.fields, std::string_view(row.column),
                                           &QvRefSystem::FieldSpec::name);
      ASSERT_NE(field, table.fields.end()) << form->caption << " " << row.column;
      const auto expected = row.kind == RowKind::kNumber      ? QvPlatform::FieldType::kFloat
                            : row.kind == RowKind::kReference ? QvPlatform::FieldType::kInteger
                                                              : QvPlatform::FieldType::kText;
      EXPECT_EQ(field->type, expected) << form->caption << " " << row.column;
      if (row.kind != RowKind::kReference) continue;
      EXPECT_EQ(field->refersTo, QvRefSystem::DescriptorOf(row.object).table)
          << form->caption << " " << row.column;
    }
  }
}

/// All but the systems with heights, whose rows depend on each other; they have tests of their own.
std::vector<const FormDescription*> PlainForms() {
  std::vector<const FormDescription*> forms;
  std::ranges::copy_if(FormDescriptions(), std::back_inserter(forms), [](const auto* form) {
    return std::ranges::find(form->rows, kVerticalReferenceSystem, &FormRow::object) ==
           form->rows.end();
  });
  return forms;
}

// Everything typed, chosen, saved and shown again.
TEST_F(EditForms, WhatIsSavedIsShownAgain) {
  for (const FormDescription* form : PlainForms()) {
    for (const bool makeNew : {true, false}) {
      if (makeNew && !form->makesRecords) continue;
      SCOPED_TRACE(std::string(form->caption) + (makeNew ? ", new" : ", edited"));
      if (!makeNew) AddValid(*form, "Before");
      const int before = Table(*form).RecordCount();
      std::vector<std::string> expected;
      ScreenUser user;
      user.In<TformQvRfEdit>([&](QWidget& dialog) {
        for (const FormRow& row : form->rows) {
          if (*row.column == 0) continue;
          if (row.leadKind == LeadKind::kCheck) {
            auto& box = Child<QAbstractButton>(dialog, row.lead);
            if (!box.isChecked()) Click(dialog, row.lead);
          }
          if (row.kind == RowKind::kReference) {
            Click(dialog, row.button);
            expected.push_back(TextOf(dialog, row.control));
            EXPECT_FALSE(expected.back().empty()) << row.control;
          } else {
            expected.push_back(row.kind == RowKind::kNumber ? "-0.0375"
                                                            : std::string(" x ") + row.column);
            Type(dialog, row.control, expected.back());
          }
        }
        Click(dialog, "bitbtnSave");
      });
      for (const FormRow& row : form->rows) {
        if (row.kind != RowKind::kReference) continue;
        user.In<TformQvRfSelector>([](QWidget& selector) {
          Press(selector, "dbgridList", Qt::Key_End);
          Click(selector, "bitbtnOk");
        });
      }
      ASSERT_TRUE(makeNew ? FormOf(*form).CreateNew() : FormOf(*form).EditCurrent());
      EXPECT_EQ(Table(*form).RecordCount(), before + (makeNew ? 1 : 0));
      EXPECT_EQ(TextOfField(*form, "NAME"), " x NAME") << "the saved record is current";
      const double stamp = Table(*form).FieldByName("LAST_USE").AsFloat();
      const bool now = makeNew || form->stamp == EditStamp::kNow;
      EXPECT_NEAR(stamp, now ? QvPlatform::CurrentMoment() : 0, 0.01);
      EXPECT_EQ(Table(*form).FieldByName("FAVOUR").AsInteger(), makeNew ? 0 : 7)
          << "an edit leaves it";
      for (const auto& fixed : form->fixed) {
        // The record that was edited is of the form's type from the start.
        const bool isType = form->type != 0 && std::string_view(fixed.column) == "TYPE";
        const int expectedValue = makeNew || fixed.always || isType ? fixed.value : 0;
        EXPECT_EQ(Table(*form).FieldByName(fixed.column).AsInteger(), expectedValue)
            << fixed.column;
      }
      Run(*form, false, [&](QWidget& dialog) {
        std::size_t at = 0;
        for (const FormRow& row : form->rows) {
          if (*row.column == 0) continue;
          const std::string shown = row.trimmed ? "x " + std::string(row.column) : expected[at];
          EXPECT_EQ(TextOf(dialog, row.control), shown) << row.control;
          ++at;
        }
        Press(dialog, form->rows.front().control, Qt::Key_Escape);
      });
    }
  }
}

// The controls that a new record cannot do without; what is disabled is not needed yet.
std::string NeededControls(const QWidget& dialog, const FormDescription& form) {
  std::string needed;
  for (const FormRow& row : form.rows) {
    const bool used =
        row.leadKind == LeadKind::kLabel || Child<QAbstractButton>(dialog, row.lead).isChecked();
    if (row.rule == Rule::kNone || !used || !IsEnabled(dialog, row.control)) continue;
    needed += (needed.empty() ? "" : " ") + std::string(row.control);
  }
  return needed;
}

TEST_F(EditForms, EveryFaultOfANewRecordIsMarkedAtOnce) {
  for (const FormDescription* form : PlainForms()) {
    if (!form->makesRecords) continue;
    SCOPED_TRACE(form->caption);
    const int before = Table(*form).RecordCount();
    EXPECT_FALSE(Run(*form, true, [&](QWidget& dialog) {
      ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
      EXPECT_EQ(RefusedControls(dialog, *form), "");
      for (const FormRow& row : form->rows) {
        // Some begin with a text.
        if (row.rule == Rule::kNotEmpty && row.leadKind == LeadKind::kLabel)
          Type(dialog, row.control, "");
      }
      Click(dialog, "bitbtnSave");
      EXPECT_TRUE(dialog.isVisible());
      EXPECT_EQ(RefusedControls(dialog, *form), NeededControls(dialog, *form));
      for (const FormRow& row : form->rows) {
        if (*row.control == 0 || !IsPainted(dialog, row.control, Qt::red)) continue;
        EXPECT_FALSE(Child(dialog, row.control).toolTip().isEmpty()) << row.control;
        Child(dialog, row.control).setFocus(Qt::TabFocusReason);
        EXPECT_EQ(IsPainted(dialog, row.control, Qt::red), !row.enteringClears)
            << "entered: " << row.control;
      }
      Click(dialog, "bitbtnClose");
    }));
    EXPECT_EQ(Table(*form).RecordCount(), before);
  }
}

TEST_F(EditForms, EveryFaultOfAnEditedRecordIsRefusedAndWritesNothing) {
  for (const FormDescription* form : PlainForms()) {
    SCOPED_TRACE(form->caption);
    AddValid(*form, "Valid");
    const std::string stored = Record(*form, {"NAME", "DESCRIPTION", "LAST_USE"});
    for (const FormRow& row : form->rows) {
      if (row.kind != RowKind::kText && row.kind != RowKind::kNumber) continue;
      if (row.rule == Rule::kNone || row.leadKind != LeadKind::kLabel) continue;
      const std::string fault = row.kind == RowKind::kNumber ? "1 foot" : "";
      EXPECT_FALSE(Run(*form, false, [&](QWidget& dialog) {
        Type(dialog, "memoDescription", "typed ahead of the refusal");
        Type(dialog, row.control, fault);
        Click(dialog, "bitbtnSave");
        EXPECT_EQ(RefusedControls(dialog, *form), row.control);
        EXPECT_EQ(TextOf(dialog, "memoDescription"), "typed ahead of the refusal");
        EXPECT_EQ(TextOf(dialog, row.control), fault);
        dialog.close();
      })) << row.control;
      EXPECT_EQ(Record(*form, {"NAME", "DESCRIPTION", "LAST_USE"}), stored) << row.control;
    }
  }
}

TEST_F(EditForms, AMarkGoesWhenItsControlIsEnteredOrTypedInto) {
  const auto& form = QvRefSystem::kLinearUnitForm;
  Run(form, true, [&](QWidget& dialog) {
    ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
    Press(dialog, "edName", Qt::Key_Return);
    EXPECT_EQ(RefusedControls(dialog, form), "edName edFactorB edFactorC");
    Press(dialog, "edName", Qt::Key_X);
    EXPECT_EQ(RefusedControls(dialog, form), "edFactorB edFactorC");
    Child(dialog, "edFactorB").setFocus(Qt::TabFocusReason);
    EXPECT_EQ(RefusedControls(dialog, form), "edFactorC");
    Click(dialog, "bitbtnClose");
  });
  EXPECT_FALSE(Run(form, true, [&](QWidget& dialog) {
    EXPECT_EQ(RefusedControls(dialog, form), "") << "the next run begins without marks";
    Click(dialog, "bitbtnClose");
  }));
}

TEST_F(EditForms, ClosingGoesBackToTheRecordThatWasCurrent) {
  const std::pair<const char*, std::function<void(QWidget&)>> ways[] = {
      {"button", [](QWidget& dialog) { Click(dialog, "bitbtnClose"); }},
      {"Esc", [](QWidget& dialog) { Press(dialog, "edName", Qt::Key_Escape); }},
      {"window frame", [](QWidget& dialog) { dialog.close(); }}};
  const auto& form = QvRefSystem::kLinearUnitForm;
  for (const auto& [name, leave] : ways) {
    for (const bool makeNew : {true, false}) {
      Table(form).First();
      EXPECT_FALSE(Run(form, makeNew, [&, leave = leave](QWidget& dialog) {
        Type(dialog, "edName", "given up");
        Type(dialog, "edFactorB", "1");
        Table(form).Last();
        leave(dialog);
      })) << name;
      EXPECT_EQ(TextOfField(form, "NAME"), "First") << name;
      EXPECT_EQ(Record(form, {"LAST_USE"}), "LAST_USE=0") << name;
      EXPECT_EQ(Table(form).RecordCount(), 2) << name;
    }
  }
}

TEST_F(EditForms, AnEmptyTableStaysEmptyAndHasNothingToEdit) {
  const auto& form = QvRefSystem::kLinearUnitForm;
  while (Table(form).RecordCount() > 0)
    Table(form).Delete();
  EXPECT_FALSE(FormOf(form).EditCurrent());
  EXPECT_FALSE(Run(form, true, [](QWidget& dialog) { Click(dialog, "bitbtnClose"); }));
  EXPECT_EQ(Table(form).RecordCount(), 0);
}

TEST_F(EditForms, ARecordUnderEditingIsNeitherEditedNorRemovedFurtherDown) {
  const auto& form = QvRefSystem::kLinearUnitForm;
  auto& processor = database_.Processor(form.object);
  QWidget second;
  Table(form).First();
  const bool saved = Run(form, false, [&](QWidget& dialog) {
    auto* inner = QvRefSystem::GetEditForm(&second, QvRefSystem::DialogChooser(), form.object);
    EXPECT_FALSE(inner->EditCurrent());
    EXPECT_FALSE(FormOf(form).EditCurrent());
    EXPECT_FALSE(processor.DeleteRecord(nullptr));
    EXPECT_EQ(database_.ui.messages,
              std::vector<std::string>(3, "The object is under editing now!"));
    EXPECT_TRUE(dialog.isVisible());
    Type(dialog, "edName", "Renamed");
    Type(dialog, "edFactorB", "1");
    Type(dialog, "edFactorC", "1");
    Click(dialog, "bitbtnSave");
  });
  EXPECT_TRUE(saved);
  EXPECT_EQ(TextOfField(form, "NAME"), "Renamed");
  EXPECT_TRUE(processor.EditKeys.empty());
  EXPECT_FALSE(Table(form).ControlsDisabled());
}

TEST_F(EditForms, ARecordThatVanishesIsNotSavedAndLeavesNoLock) {
  const auto& form = QvRefSystem::kLinearUnitForm;
  AddValid(form, "Doomed");
  EXPECT_FALSE(Run(form, false, [&](QWidget& dialog) {
    Table(form).Delete();
    Click(dialog, "bitbtnSave");
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_NE(Child(dialog, "bitbtnSave").toolTip().indexOf("removed"), -1);
    EXPECT_EQ(TextOf(dialog, "edName"), "Doomed");
    Click(dialog, "bitbtnClose");
  }));
  EXPECT_EQ(Table(form).RecordCount(), 2);
  EXPECT_TRUE(database_.Processor(form.object).EditKeys.empty());
}

TEST_F(EditForms, AFailedPostIsCancelledAndTheDialogStays) {
  const auto& form = QvRefSystem::kLinearUnitForm;
  AddValid(form, "Contested");
  EXPECT_TRUE(Run(form, false, [&](QWidget& dialog) {
    // Somebody else changes the record in a data set of his own.
    QvPlatform::TQvDataBuffer buffer;
    buffer.StreamName = Table(form).DataBuff->StreamName;
    QvPlatform::TQvDataSet other(buffer);
    other.Open();
    other.Last();
    other.Edit();
    other.FieldByName("DESCRIPTION").SetString("theirs");
    other.Post();
    other.Close();
    Type(dialog, "edName", "Mine");
    Click(dialog, "bitbtnSave");
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_EQ(Table(form).State(), QvPlatform::DataSetState::kBrowse);
    EXPECT_EQ(Record(form, {"NAME", "DESCRIPTION"}), "NAME=Contested DESCRIPTION=theirs");
    EXPECT_TRUE(database_.ui.messages.empty());
    EXPECT_FALSE(Child(dialog, "bitbtnSave").toolTip().isEmpty());
    Click(dialog, "bitbtnSave");
  }));
  EXPECT_EQ(TextOfField(form, "NAME"), "Mine") << "the user may try again";
}

TEST_F(EditForms, OwnersHideWhileTheirDialogsRunToAnyDepth) {
  const auto& form = QvRefSystem::kPrimeMeridianForm;
  AddValid(form, "Paris");
  auto* meridians = QvRefSystem::GetSelectorFor(&owner_, static_cast<int>(kPrimeMeridian));
  ScreenUser user;
  QWidget* edit = nullptr;
  user.In<TformQvRfSelector>([&](QWidget& list) {
        Click(list, "bitbtnEdit");
        EXPECT_TRUE(list.isVisible());
        EXPECT_EQ(MarkedName(list), "Meridian of Paris");
        Click(list, "bitbtnCancel");
      })
      .In<TformQvRfEdit>([&](QWidget& dialog) {
        edit = &dialog;
        EXPECT_FALSE(meridians->isVisible());
        Click(dialog, "btnUnit");
        EXPECT_TRUE(dialog.isVisible());
        EXPECT_EQ(TextOf(dialog, "edUnit"), "Grad");
        Type(dialog, "edName", "Meridian of Paris");
        Click(dialog, "bitbtnSave");
      })
      .In<TformQvRfSelector>([&](QWidget& units) {
        EXPECT_FALSE(edit->isVisible());
        Click(units, "bitbtnNew");
        EXPECT_EQ(MarkedName(units), "Grad");
        Click(units, "bitbtnOk");
      })
      .In<TformQvRfEdit>([](QWidget& unit) {
        Type(unit, "edName", "Grad");
        Type(unit, "edFactorB", "1");
        Type(unit, "edFactorC", "63.66");
        Press(unit, "edFactorC", Qt::Key_Return);
      });
  meridians->Select(nullptr, 0, false, nullptr, 0);
  EXPECT_EQ(TextOfField(form, "NAME"), "Meridian of Paris");
  EXPECT_EQ(Table(form).FieldByName("UNIT_AUTOKEY").AsInteger(), KeyOf(kAngularUnit, "Grad"));
}

TEST_F(EditForms, AReferenceThatIsGoneShowsNothingAndIsRefused) {
  const auto& form = QvRefSystem::kPrimeMeridianForm;
  AddValid(form, "Paris");
  Table(form).Edit();
  Table(form).FieldByName("UNIT_AUTOKEY").SetInteger(9999);
  Table(form).Post();
  ScreenUser user;
  user.In<TformQvRfEdit>([&](QWidget& dialog) {
        EXPECT_EQ(TextOf(dialog, "edUnit"), "");
        Click(dialog, "bitbtnSave");
        EXPECT_EQ(RefusedControls(dialog, form), "edUnit");
        Click(dialog, "btnUnit");
        EXPECT_EQ(RefusedControls(dialog, form), "") << "the button takes the mark off";
        EXPECT_EQ(TextOf(dialog, "edUnit"), "");
        Click(dialog, "bitbtnClose");
      })
      .In<TformQvRfSelector>([](QWidget& units) { Click(units, "bitbtnCancel"); });
  EXPECT_FALSE(FormOf(form).EditCurrent());
}

TEST_F(EditForms, LimitsHoldForTypingAndNotForWhatIsStored) {
  const auto& form = QvRefSystem::kPrimeMeridianForm;
  const std::string longName(80, 'n');
  const std::string longText = std::string(290, 'd') + "\r\nend";
  AddValid(form, longName);
  Table(form).Edit();
  Table(form).FieldByName("DESCRIPTION").SetString(longText);
  Table(form).Post();
  EXPECT_TRUE(Run(form, false, [&](QWidget& dialog) {
    EXPECT_EQ(TextOf(dialog, "edName"), longName);
    Press(dialog, "edName", Qt::Key_End);
    QTest::keyClicks(&Child(dialog, "edName"), "more");
    QTest::keyClicks(&Child(dialog, "memoDescription"), "more");
    EXPECT_EQ(TextOf(dialog, "edName"), longName);
    Type(dialog, "edLongitude", "2");
    Click(dialog, "bitbtnSave");
  }));
  EXPECT_EQ(TextOfField(form, "NAME"), longName);
  EXPECT_EQ(TextOfField(form, "DESCRIPTION"), longText) << "line ends and all";
  Run(form, false, [&](QWidget& dialog) {
    Type(dialog, "edName", std::string(70, 'x'));
    EXPECT_EQ(TextOf(dialog, "edName"), std::string(64, 'x'));
    Type(dialog, "memoDescription", std::string(260, 'y'));
    EXPECT_EQ(TextOf(dialog, "memoDescription"), std::string(255, 'y'));
    Click(dialog, "bitbtnClose");
  });
}

TEST_F(EditForms, PlaceAndSizeStayForTheRunOfTheProgram) {
  const auto& form = QvRefSystem::kPrimeMeridianForm;
  QRect left;
  const auto run = [&](const std::function<void(QWidget&)>& act) {
    QWidget owner;
    ScreenUser user;
    user.In<TformQvRfEdit>([&](QWidget& dialog) {
      act(dialog);
      Click(dialog, "bitbtnClose");
    });
    EXPECT_FALSE(
        QvRefSystem::GetEditForm(&owner, QvRefSystem::DialogChooser(), form.object)->CreateNew());
  };
  run([&](QWidget& dialog) {
    left = dialog.geometry().translated(31, 17).adjusted(0, 0, 53, 29);
    dialog.setGeometry(left);
  });
  run([&](QWidget& dialog) { EXPECT_EQ(dialog.geometry(), left); });
}

TEST_F(EditForms, TabWalksTheRowsAsTheyStand) {
  for (const FormDescription* form : FormDescriptions()) {
    AddValid(*form, "Valid");
    Run(*form, false, [&](QDialog& dialog) {
      std::vector<QPoint> places;
      QWidget* const first = dialog.focusWidget();
      EXPECT_EQ(first, &Child(dialog, "edName")) << form->caption;
      do {
        QWidget* at = dialog.focusWidget();
        EXPECT_FALSE(at->visibleRegion().isEmpty())
            << form->caption << " " << at->objectName().toStdString();
        places.push_back(at->mapTo(&dialog, at->rect().center()));
        QTest::keyClick(at, Qt::Key_Tab);
      } while (dialog.focusWidget() != first && places.size() < 50);
      EXPECT_GE(places.size(), 4U) << form->caption;
      for (std::size_t i = 1; i < places.size(); ++i) {
        const bool onward = places[i].y() > places[i - 1].y() || places[i].x() > places[i - 1].x();
        EXPECT_TRUE(onward) << form->caption << ", stop " << i;
      }
      dialog.reject();
    });
  }
}

}  // namespace
}  // namespace refframe_tests
