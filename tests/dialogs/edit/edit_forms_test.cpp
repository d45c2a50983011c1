// What all edit dialogs have in common, over all descriptions: refusals, the round trip of every
// row, and the rules of who is current, locked and stamped.

#include <algorithm>

#include "tests/dialogs/edit/edit_dialog_fixture.h"

namespace refframe_tests {
namespace {

using namespace QvRefSystem;
using enum TObjectType;
using QvPlatform::FieldType;

class EditForms : public EditTest {
 protected:
  /// What every save does to a record beside its rows.
  void ExpectStamps(const FormDescription& form, bool makeNew) {
    const auto number = [&](const char* field) { return Table(form).FieldByName(field).AsFloat(); };
    const bool now = makeNew || form.stamp == EditStamp::kNow;
    EXPECT_NEAR(number("LAST_USE"), now ? QvPlatform::CurrentMoment() : 0, 0.01);
    EXPECT_EQ(number("FAVOUR"), makeNew ? 0 : 7) << "an edit leaves it";
    for (const auto& fixed : form.fixed) {
      // The record that was edited is of the form's type from the start.
      const bool isType = form.type != 0 && std::string_view(fixed.column) == "TYPE";
      EXPECT_EQ(number(fixed.column), makeNew || fixed.always || isType ? fixed.value : 0)
          << fixed.column;
    }
  }
};

TEST_F(EditForms, DescriptionsSayWhatTheTablesHave) {
  for (const FormDescription* form : FormDescriptions()) {
    const auto& fields = TableOf(DescriptorOf(form->object).table).fields;
    for (const FormRow& row : form->rows) {
      if (*row.column == 0) continue;
      SCOPED_TRACE(std::string(form->caption) + " " + row.column);
      const auto field = std::ranges::find(fields, std::string_view(row.column), &FieldSpec::name);
      ASSERT_NE(field, fields.end());
      const bool refers = row.kind == RowKind::kReference;
      EXPECT_EQ(field->type, row.kind == RowKind::kNumber ? FieldType::kFloat
                             : refers                     ? FieldType::kInteger
                                                          : FieldType::kText);
      EXPECT_EQ(field->refersTo, refers ? DescriptorOf(row.object).table : TableId::kNone);
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

// Types or chooses something in every row; returns what each bound row then holds.
std::vector<std::string> FillIn(QWidget& dialog, const FormDescription& form) {
  std::vector<std::string> texts;
  for (const FormRow& row : form.rows) {
    if (*row.column == 0) continue;
    if (row.leadKind == LeadKind::kCheck && !IsChecked(dialog, row.lead)) Click(dialog, row.lead);
    if (row.kind == RowKind::kReference) {
      const std::string before = TextOf(dialog, row.control);
      Open<TformQvRfSelector>(dialog, row.button, [&before](QWidget& list) {
        const bool offered = !before.empty() && ListedNames(list).find(before) != std::string::npos;
        EXPECT_TRUE(!offered || MarkedName(list) == before) << "opens on what is referred to";
        ChooseLast(list);
      });
      texts.push_back(TextOf(dialog, row.control));
      EXPECT_FALSE(texts.back().empty()) << row.control;
    } else {
      texts.push_back(row.kind == RowKind::kNumber ? "-0.0375" : std::string(" x ") + row.column);
      Type(dialog, row.control, texts.back());
    }
  }
  return texts;
}

TEST_F(EditForms, WhatIsSavedIsShownAgain) {
  for (const FormDescription* form : PlainForms()) {
    for (const bool makeNew : {true, false}) {
      if (makeNew && !form->makesRecords) continue;
      SCOPED_TRACE(std::string(form->caption) + (makeNew ? ", new" : ", edited"));
      if (!makeNew) AddValid(*form, "Before");
      const int before = Table(*form).RecordCount();
      std::vector<std::string> expected;
      const Act fill = [&](QWidget& dialog) {
        expected = FillIn(dialog, *form);
        Save(dialog);
      };
      ASSERT_TRUE(makeNew ? Make(*form, fill) : Change(*form, fill));
      EXPECT_EQ(Table(*form).RecordCount(), before + (makeNew ? 1 : 0));
      EXPECT_EQ(TextOfField(*form, "NAME"), " x NAME") << "the saved record is current";
      ExpectStamps(*form, makeNew);
      Change(*form, [&](QWidget& dialog) {
        auto text = expected.begin();
        for (const FormRow& row : form->rows) {
          if (*row.column == 0) continue;
          EXPECT_EQ(TextOf(dialog, row.control), row.trimmed ? text->substr(1) : *text)
              << row.control;
          ++text;
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
    const bool used = row.leadKind == LeadKind::kLabel || IsChecked(dialog, row.lead);
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
    EXPECT_FALSE(Make(*form, [&](QWidget& dialog) {
      ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
      for (const FormRow& row : form->rows) {
        // Some begin with a text.
        if (row.rule == Rule::kNotEmpty && row.leadKind == LeadKind::kLabel)
          Type(dialog, row.control, "");
      }
      Save(dialog);
      EXPECT_TRUE(dialog.isVisible());
      EXPECT_EQ(RefusedControls(dialog, *form), NeededControls(dialog, *form));
      for (const FormRow& row : form->rows) {
        if (*row.control == 0 || !IsPainted(dialog, row.control, Qt::red)) continue;
        EXPECT_NE(TipOf(dialog, row.control), "") << row.control;
        Child(dialog, row.control).setFocus(Qt::TabFocusReason);
        EXPECT_EQ(IsPainted(dialog, row.control, Qt::red), !row.enteringClears)
            << "entered: " << row.control;
      }
      Press(dialog, "edName", Qt::Key_Return);
      EXPECT_TRUE(IsPainted(dialog, "edName", Qt::red)) << "Enter saves";
      Press(dialog, "edName", Qt::Key_X);
      EXPECT_EQ(IsPainted(dialog, "edName", Qt::red), !form->rows.front().enteringClears)
          << "typed into";
    }));
    EXPECT_EQ(Table(*form).RecordCount(), before);
  }
  EXPECT_FALSE(Make(kLinearUnitForm, [](QWidget& dialog) {
    EXPECT_EQ(RefusedControls(dialog, kLinearUnitForm), "") << "the next run is without marks";
  }));
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
      EXPECT_FALSE(Change(*form, [&](QWidget& dialog) {
        Type(dialog, "memoDescription", "typed ahead of the refusal");
        Type(dialog, row.control, fault);
        Save(dialog);
        EXPECT_EQ(RefusedControls(dialog, *form), row.control);
        EXPECT_EQ(TextOf(dialog, "memoDescription"), "typed ahead of the refusal");
        EXPECT_EQ(TextOf(dialog, row.control), fault);
      })) << row.control;
      EXPECT_EQ(Record(*form, {"NAME", "DESCRIPTION", "LAST_USE"}), stored) << row.control;
    }
  }
}

TEST_F(EditForms, ClosingGoesBackToTheRecordThatWasCurrent) {
  const std::pair<const char*, Act> ways[] = {
      {"button", Close},
      {"Esc", [](QWidget& dialog) { Press(dialog, "edName", Qt::Key_Escape); }},
      {"window frame", [](QWidget& dialog) { dialog.close(); }}};
  const auto& form = kLinearUnitForm;
  for (const auto& [name, leave] : ways) {
    const Act giveUp = [&, &leave = leave](QWidget& dialog) {
      Type(dialog, "edName", "given up");
      Type(dialog, "edFactorB", "1");
      Table(form).Last();
      leave(dialog);
    };
    for (const bool makeNew : {true, false}) {
      Table(form).First();
      EXPECT_FALSE(makeNew ? Make(form, giveUp) : Change(form, giveUp)) << name;
      EXPECT_EQ(Record(form, {"NAME", "LAST_USE"}), "NAME=First LAST_USE=0") << name;
      EXPECT_EQ(Table(form).RecordCount(), 2) << name;
    }
  }
}

TEST_F(EditForms, AnEmptyTableStaysEmptyAndHasNothingToEdit) {
  while (Table(kLinearUnitForm).RecordCount() > 0)
    Table(kLinearUnitForm).Delete();
  EXPECT_FALSE(FormOf(kLinearUnitForm).EditCurrent());
  EXPECT_FALSE(Make(kLinearUnitForm, Close));
  EXPECT_EQ(Table(kLinearUnitForm).RecordCount(), 0);
}

TEST_F(EditForms, ARecordUnderEditingIsNeitherEditedNorRemovedFurtherDown) {
  const auto& form = kLinearUnitForm;
  auto& processor = database_.Processor(form.object);
  AddValid(form, "Locked");
  EXPECT_TRUE(Change(form, [&](QWidget& dialog) {
    QWidget second;
    EXPECT_FALSE(GetEditForm(&second, DialogChooser(), form.object)->EditCurrent());
    EXPECT_FALSE(FormOf(form).EditCurrent());
    EXPECT_FALSE(processor.DeleteRecord(nullptr));
    EXPECT_EQ(database_.ui.messages,
              std::vector<std::string>(3, "The object is under editing now!"));
    EXPECT_TRUE(dialog.isVisible());
    Type(dialog, "edName", "Renamed");
    Save(dialog);
  }));
  EXPECT_EQ(TextOfField(form, "NAME"), "Renamed");
  EXPECT_TRUE(processor.EditKeys.empty());
  EXPECT_FALSE(Table(form).ControlsDisabled());
}

TEST_F(EditForms, ARecordThatVanishesIsSavedAsANewOneIfTheUserWants) {
  const auto& form = kLinearUnitForm;
  const int key = AddValid(form, "Doomed");
  database_.ui.answers = {QvPlatform::MessageAnswer::kNo, QvPlatform::MessageAnswer::kYes};
  EXPECT_TRUE(Change(form, [&](QWidget& dialog) {
    Table(form).Delete();
    Save(dialog);
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_NE(TipOf(dialog, "bitbtnSave").find("removed"), std::string::npos);
    EXPECT_EQ(TextOf(dialog, "edName"), "Doomed");
    EXPECT_EQ(Table(form).RecordCount(), 2);
    Save(dialog);
  }));
  EXPECT_EQ(TextOfField(form, "NAME"), "Doomed");
  EXPECT_NE(database_.Processor(form.object).GetCurrentKey(), key);
  EXPECT_TRUE(database_.Processor(form.object).EditKeys.empty());
}

TEST_F(EditForms, WhatAnotherHasChangedIsMarkedAndDecidedByTheUser) {
  using enum QvPlatform::ConflictAnswer;
  const auto& form = kLinearUnitForm;
  const struct {
    const char* name;
    QvPlatform::ConflictAnswer answer;
    const char* saved;
  } rows[] = {{"take theirs", kTakeTheirs, "Mine theirs"},
              {"keep mine", kKeepMine, "Mine old DESCRIPTION"},
              {"go back and take one", kGoBack, "Mine theirs"}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    AddValid(form, row.name);
    database_.ui.conflictAnswer = row.answer;
    database_.ui.conflictsAsked = 0;
    EXPECT_TRUE(Change(form, [&](QWidget& dialog) {
      ChangeElsewhere(Table(form), row.name);
      Type(dialog, "edName", "Mine");
      for (int asked = 1; asked <= 2 && dialog.isVisible(); ++asked) {
        Save(dialog);
        EXPECT_THAT(database_.ui.conflict,
                    testing::ElementsAre("Description: old DESCRIPTION/theirs/old DESCRIPTION"));
        if (row.answer != kGoBack) break;
        EXPECT_EQ(std::exchange(database_.ui.conflictsAsked, 0), 1) << "each time";
        EXPECT_EQ(TextOf(dialog, "edName") + TextOf(dialog, "memoDescription"),
                  "Mineold DESCRIPTION");
      }
      if (row.answer == kGoBack) {
        EXPECT_NE(TipOf(dialog, "memoDescriptionTheirs").find("theirs"), std::string::npos);
        EXPECT_FALSE(IsShown(dialog, "edNameTheirs"));
        Click(dialog, "memoDescriptionTheirs");
      }
      if (dialog.isVisible()) Save(dialog);
    }));
    EXPECT_EQ(TextOfField(form, "NAME") + " " + TextOfField(form, "DESCRIPTION"), row.saved);
  }
  AddValid(form, "Stamped");
  database_.ui.conflictsAsked = 0;
  EXPECT_TRUE(Change(form, [&](QWidget& dialog) {
    ChangeElsewhere(Table(form), "Stamped", "LAST_USE", "46000");
    Save(dialog);
  }));
  EXPECT_EQ(database_.ui.conflictsAsked, 0) << "for a stamp";
}

TEST_F(EditForms, EachDialogBringsOthersChangesAndKeepsItsOwn) {
  database_.ui.conflictAnswer = QvPlatform::ConflictAnswer::kTakeTheirs;
  for (const FormDescription* form : PlainForms()) {
    SCOPED_TRACE(form->caption);
    AddValid(*form, "Contested");
    const std::string name = TextOfField(*form, "NAME");
    database_.ui.conflictsAsked = 0;
    (void)Change(*form, [&](QWidget& dialog) {
      ChangeElsewhere(Table(*form), name);
      Type(dialog, "edName", "Mine");
      Save(dialog);
      EXPECT_EQ(TextOf(dialog, "edName"), "Mine");
      EXPECT_EQ(TextOf(dialog, "memoDescription"), "theirs");
      Save(dialog);
    });
    EXPECT_EQ(database_.ui.conflictsAsked, 1);
    EXPECT_EQ(Record(*form, {"NAME", "DESCRIPTION"}), "NAME=Mine DESCRIPTION=theirs");
  }
}

TEST_F(EditForms, AReferenceThatAnotherHasRemovedIsNotSaved) {
  AddValid(kPrimeMeridianForm, "Paris");
  EXPECT_FALSE(Change(kPrimeMeridianForm, [&](QWidget& dialog) {
    const int unit = KeyOf(TObjectType::kAngularUnit, "First");
    ASSERT_TRUE(database_.Processor(TObjectType::kAngularUnit).LocateKey(unit));
    database_.data->datasetAngularUnit.Delete();
    Save(dialog);
    EXPECT_NE(TipOf(dialog, "bitbtnSave").find("First"), std::string::npos);
    EXPECT_EQ(TextOf(dialog, "edUnit"), "");
  }));
}

TEST_F(EditForms, OwnersHideWhileTheirDialogsRunToAnyDepth) {
  AddValid(kPrimeMeridianForm, "Paris");
  const auto makeGrad = [](QWidget& unit) {
    Type(unit, "edName", "Grad");
    Type(unit, "edFactorB", "1");
    Type(unit, "edFactorC", "63.66");
    Press(unit, "edFactorC", Qt::Key_Return);
  };
  ScreenUser user(In<TformQvRfSelector>([&](QWidget& list) {
    Open<TformQvRfEdit>(list, "bitbtnEdit", [&](QWidget& dialog) {
      EXPECT_FALSE(list.isVisible());
      Open<TformQvRfSelector>(dialog, "btnUnit", [&](QWidget& units) {
        EXPECT_FALSE(dialog.isVisible());
        Open<TformQvRfEdit>(units, "bitbtnNew", makeGrad);
        EXPECT_EQ(MarkedName(units), "Grad");
        Ok(units);
      });
      EXPECT_TRUE(dialog.isVisible());
      EXPECT_EQ(TextOf(dialog, "edUnit"), "Grad");
      Type(dialog, "edName", "Meridian of Paris");
      Save(dialog);
    });
    EXPECT_TRUE(list.isVisible());
    EXPECT_EQ(MarkedName(list), "Meridian of Paris");
    Cancel(list);
  }));
  GetSelectorFor(&owner_, static_cast<int>(kPrimeMeridian))->Select(nullptr, 0, false, nullptr, 0);
  EXPECT_EQ(Record(kPrimeMeridianForm, {"NAME", "UNIT_AUTOKEY"}),
            "NAME=Meridian of Paris UNIT_AUTOKEY=" + std::to_string(KeyOf(kAngularUnit, "Grad")));
}

TEST_F(EditForms, AReferenceThatIsGoneShowsNothingAndIsRefused) {
  const auto& form = kPrimeMeridianForm;
  AddValid(form, "Paris", {{"UNIT_AUTOKEY", "9999"}});
  EXPECT_FALSE(Change(form, [&](QWidget& dialog) {
    EXPECT_EQ(TextOf(dialog, "edUnit"), "");
    Save(dialog);
    EXPECT_EQ(RefusedControls(dialog, form), "edUnit");
    Open<TformQvRfSelector>(dialog, "btnUnit", Cancel);
    EXPECT_EQ(RefusedControls(dialog, form), "") << "the button takes the mark off";
    EXPECT_EQ(TextOf(dialog, "edUnit"), "");
  }));
}

TEST_F(EditForms, LimitsHoldForTypingAndNotForWhatIsStored) {
  const auto& form = kPrimeMeridianForm;
  const std::string longName(80, 'n');
  const std::string longText = std::string(290, 'd') + "\r\nend";
  AddValid(form, longName, {{"DESCRIPTION", longText}});
  EXPECT_TRUE(Change(form, [&](QWidget& dialog) {
    Press(dialog, "edName", Qt::Key_End);
    QTest::keyClicks(&Child(dialog, "edName"), "more");
    QTest::keyClicks(&Child(dialog, "memoDescription"), "more");
    EXPECT_EQ(TextOf(dialog, "edName"), longName);
    Save(dialog);
  }));
  EXPECT_EQ(TextOfField(form, "NAME"), longName);
  EXPECT_EQ(TextOfField(form, "DESCRIPTION"), longText) << "line ends and all";
  Change(form, [&](QWidget& dialog) {
    Type(dialog, "edName", std::string(70, 'x'));
    EXPECT_EQ(TextOf(dialog, "edName"), std::string(64, 'x'));
    Type(dialog, "memoDescription", std::string(260, 'y'));
    EXPECT_EQ(TextOf(dialog, "memoDescription"), std::string(255, 'y'));
  });
}

TEST_F(EditForms, PlaceAndSizeStayForTheRunOfTheProgram) {
  QRect left;
  for (const bool again : {false, true}) {
    QWidget owner;
    ScreenUser user(In<TformQvRfEdit>([&](QWidget& dialog) {
      EXPECT_EQ(dialog.geometry() == left, again);
      left = dialog.geometry().translated(31, 17).adjusted(0, 0, 53, 29);
      dialog.setGeometry(left);
      Close(dialog);
    }));
    EXPECT_FALSE(GetEditForm(&owner, DialogChooser(), kPrimeMeridian)->CreateNew());
  }
}

TEST_F(EditForms, TabWalksTheRowsAsTheyStand) {
  for (const FormDescription* form : FormDescriptions()) {
    SCOPED_TRACE(form->caption);
    AddValid(*form, "Valid");
    Change(*form, [](QWidget& dialog) {
      std::vector<QPoint> places;
      QWidget* const first = dialog.focusWidget();
      EXPECT_EQ(first, &Child(dialog, "edName"));
      do {
        QWidget* at = dialog.focusWidget();
        EXPECT_FALSE(at->visibleRegion().isEmpty()) << at->objectName().toStdString();
        places.push_back(at->mapTo(&dialog, at->rect().center()));
        QTest::keyClick(at, Qt::Key_Tab);
      } while (dialog.focusWidget() != first && places.size() < 50);
      EXPECT_GE(places.size(), 4U);
      for (std::size_t i = 1; i < places.size(); ++i) {
        EXPECT_TRUE(places[i].y() > places[i - 1].y() || places[i].x() > places[i - 1].x())
            << "stop " << i;
      }
    });
  }
}

}  // namespace
}  // namespace refframe_tests
