#include "dialogs/import_export.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFileDialog>
#include <QLineEdit>
#include <fstream>

#include "tests/dialogs/dialog_fixture.h"
#include "tests/support/sample_trees.h"

namespace refframe_tests {
namespace {

using QvRefSystem::TformQvRfSelector;
using QvRefSystem::TObjectFileForm;
using enum QvRefSystem::TObjectType;

class ImportAndExport : public DialogTest {
 protected:
  static std::string Content(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  QvRefSystem::TQvRfDataProcessor& Units() { return database_.Processor(kLinearUnit); }
  TemporaryFolder folder_;
};

TEST_F(ImportAndExport, BothFormsComeBackAsTheSameTree) {
  ASSERT_GT(Units().InsertFromTree(MakeTree(MetreTree).get()), 0);
  for (const auto form : {TObjectFileForm::kText, TObjectFileForm::kXml}) {
    const std::string path = folder_.Path("metre");
    ASSERT_TRUE(WriteObjectFile(Units(), path, form));
    QvCommonUtils::TStringTree expected;
    ASSERT_TRUE(Units().WriteToTree(&expected, 0, 0));
    QvCommonUtils::TStringTree told;
    QvRefSystem::ReadTreeFile(path, form, &told);
    EXPECT_TRUE(SameTree(&told, &expected));
    QvCommonUtils::TStringTree guessed;
    QvRefSystem::ReadTreeFile(path, &guessed);
    EXPECT_TRUE(SameTree(&guessed, &expected));
    EXPECT_EQ(Content(path).back() == '\0', form == TObjectFileForm::kText);
  }
}

// The user writes an object to a file through the dialog, and takes it into another database.
TEST_F(ImportAndExport, AnObjectTravelsThroughTheDialogs) {
  database_.data->ShowImportExport = true;
  ASSERT_GT(Units().InsertFromTree(MakeTree(MetreTree).get()), 0);
  const std::unique_ptr<TformQvRfSelector> selector(QvRefSystem::GetSelectorFor(nullptr, 8));
  const std::string path = folder_.Path("out.x-ref-system");
  const auto choose = [&path](QFileDialog& dialog) {
    EXPECT_TRUE(dialog.selectedNameFilter().contains("*.x-ref-system"))
        << "the XML form is offered first";
    Child<QLineEdit>(dialog, "fileNameEdit").setText(QString::fromStdString(path));
    QMetaObject::invokeMethod(&dialog, "accept");
  };
  {
    ScreenUser user;
    user.In<TformQvRfSelector>([](QWidget& form) {
          Click(form, "bitbtnExport");
          Click(form, "bitbtnCancel");
        })
        .In<QFileDialog>([&](QFileDialog& dialog) {
          EXPECT_EQ(Child<QLineEdit>(dialog, "fileNameEdit").text().toStdString(), "metre");
          choose(dialog);
        });
    EXPECT_FALSE(selector->Select(nullptr, 0, false, nullptr, 0));
  }
  ASSERT_NE(Content(path), "");
  database_.data->datasetLinearUnit.Delete();
  ScreenUser user;
  user.In<TformQvRfSelector>([](QWidget& form) {
        Click(form, "bitbtnImport");
        EXPECT_EQ(ListedNames(form), "metre");
        EXPECT_EQ(MarkedName(form), "metre");
        Click(form, "bitbtnCancel");
      })
      .In<QFileDialog>(choose);
  EXPECT_FALSE(selector->Select(nullptr, 0, false, nullptr, 0));
  EXPECT_TRUE(database_.ui.messages.empty());
}

TEST_F(ImportAndExport, AFileThatIsNoObjectIsToldAndChangesNothing) {
  std::ofstream(folder_.Path("bad.x-ref-system")) << "this is no tree";
  const std::unique_ptr<TformQvRfSelector> selector(QvRefSystem::GetSelectorFor(nullptr, 8));
  ScreenUser user;
  user.In<TformQvRfSelector>([](QWidget& form) {
        Click(form, "bitbtnImport");
        Click(form, "bitbtnClose");
      })
      .In<QFileDialog>([this](QFileDialog& dialog) {
        Child<QLineEdit>(dialog, "fileNameEdit")
            .setText(QString::fromStdString(folder_.Path("bad.x-ref-system")));
        QMetaObject::invokeMethod(&dialog, "accept");
      });
  EXPECT_FALSE(selector->Browse(0, false, true));
  EXPECT_EQ(database_.ui.messages.size(), 1U);
  EXPECT_EQ(database_.data->datasetLinearUnit.RecordCount(), 0);
}

TEST_F(ImportAndExport, AnObjectOfAnotherTypeIsRefusedByName) {
  const std::string path = folder_.Path("metre.x-ref-system");
  WriteTreeFile(*MakeTree(MetreTree), path, TObjectFileForm::kXml);
  const std::unique_ptr<TformQvRfSelector> selector(QvRefSystem::GetSelectorFor(nullptr, 2));
  ScreenUser user;
  user.In<TformQvRfSelector>([](QWidget& form) {
        Press(form, "dbgridList", Qt::Key_F3, Qt::ControlModifier | Qt::ShiftModifier);
        Click(form, "bitbtnCancel");
      })
      .In<QFileDialog>([&](QFileDialog& dialog) {
        Child<QLineEdit>(dialog, "fileNameEdit").setText(QString::fromStdString(path));
        QMetaObject::invokeMethod(&dialog, "accept");
      });
  EXPECT_FALSE(selector->Select(nullptr, 0, false, nullptr, 0));
  EXPECT_EQ(database_.ui.messages, std::vector<std::string>{"Import failed(datum)"});
}

TEST_F(ImportAndExport, AWholeTableGoesToAFolder) {
  ASSERT_GT(Units().InsertFromTree(MakeTree(MetreTree).get()), 0);
  ASSERT_GT(database_.Processor(kAngularUnit).InsertFromTree(MakeTree(DegreeTree).get()), 0);
  ASSERT_GT(database_.Processor(kAngularUnit).InsertFromTree(MakeTree(SecondTree).get()), 0);
  const std::unique_ptr<TformQvRfSelector> selector(QvRefSystem::GetSelectorFor(nullptr, 10));
  ScreenUser user;
  user.In<TformQvRfSelector>([](QWidget& form) {
        Click(form, "bitbtnExport", Qt::ShiftModifier);
        Click(form, "bitbtnClose");
      })
      .In<QFileDialog>([this](QFileDialog& dialog) {
        Child<QLineEdit>(dialog, "fileNameEdit").setText(QString::fromStdString(folder_.Path()));
        QMetaObject::invokeMethod(&dialog, "accept");
      });
  EXPECT_FALSE(selector->Browse(0, false, true));
  EXPECT_EQ(QDir(QString::fromStdString(folder_.Path())).entryList(QDir::Files),
            QStringList({"arc-second.x-ref-system", "degree.x-ref-system"}));
}

}  // namespace
}  // namespace refframe_tests
