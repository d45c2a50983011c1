// The details of a system: where it is used, its WKT, and the way of both to the clipboard.

#include "dialogs/select/details_view.h"

#include "tests/dialogs/dialog_fixture.h"

namespace refframe_tests {
namespace {

using namespace QvRefSystem;
using enum TObjectType;

class DetailsViewTest : public ListTest {
 protected:
  DetailsViewTest() {
    for (const int kind : {1, 4, 5})
      Insert(kReferenceSystem, MakeTree(SystemTree, kind));
  }
  // Opens the details of the system and does something with them.
  void Look(const std::string& system, const std::function<void(QWidget&, DetailsView&)>& act) {
    ScreenUser user(In<TformQvRfSelector>([&](QWidget& form) {
      act(form, Child<DetailsView>(form, "tabDetails"));
      Click(form, "bitbtnClose");
    }));
    systems_.Browse(KeyOf(kReferenceSystem, system), true, false);
  }
};

TEST_F(DetailsViewTest, ASystemOfTheRegistryHasAMapOfItsArea) {
  Look("NAD27 / UTM 17N", [](QWidget& form, DetailsView&) {
    EXPECT_TRUE(IsShown(form, "mapArea"));
    const QString area = Child<QLabel>(form, "lblArea").text();
    EXPECT_TRUE(area.startsWith("Area of use of EPSG:26705: ")) << area.toStdString();
    EXPECT_GT(area.size(), 40);
  });
}

TEST_F(DetailsViewTest, ASystemWithoutAMapSaysWhyItHasNoWkt) {
  Add(TableId::kRefSystem, "Broken", {{"TYPE", 5}});
  for (const auto& [system, wkt] :
       {std::pair{"Site grid", "There is no WKT 2 of this system: "},
        std::pair{"Broken", "The system refers to an object that is not in the database."}}) {
    Look(system, [wkt = wkt](QWidget& form, DetailsView& details) {
      EXPECT_FALSE(IsShown(form, "mapArea"));
      details.setCurrentIndex(1);
      EXPECT_TRUE(TextOf(form, "memoWkt").starts_with(wkt)) << TextOf(form, "memoWkt");
    });
  }
}

TEST_F(DetailsViewTest, TheSecondPageFollowsTheCurrentSystem) {
  Look("NAD27 / UTM 17N", [this](QWidget& form, DetailsView& details) {
    EXPECT_EQ(TextOf(form, "memoWkt"), "") << "nothing is worked out before it shows";
    details.setCurrentIndex(1);
    EXPECT_TRUE(TextOf(form, "memoWkt").starts_with("PROJCRS[\"NAD27 / UTM 17N\""));
    database_.Processor(kReferenceSystem).LocateKey(KeyOf(kReferenceSystem, "NAD27 geodetic"));
    EXPECT_TRUE(TextOf(form, "memoWkt").starts_with("GEOGCRS[\"NAD27 geodetic\""));
    Click(form, "bitbtnList");
    Press(form, "dbgridList", Qt::Key_Up);
    Click(form, "bitbtnDetails");
    EXPECT_TRUE(TextOf(form, "memoWkt").starts_with("PROJCRS[")) << "the page stays open";
  });
}

TEST_F(DetailsViewTest, CopiesThePageThatIsOpen) {
  Look("NAD27 / UTM 17N", [](QWidget& form, DetailsView& details) {
    for (const auto& [page, memo] : {std::pair{0, "memoDetails"}, std::pair{1, "memoWkt"}}) {
      details.setCurrentIndex(page);
      QApplication::clipboard()->clear();
      Click(form, "btnCopy");
      EXPECT_EQ(QApplication::clipboard()->text().toStdString(), TextOf(form, memo));
      EXPECT_NE(TextOf(form, memo), "");
    }
  });
}

TEST_F(DetailsViewTest, OtherObjectsHaveTheirDescriptionAlone) {
  ScreenUser user(In<TformQvRfSelector>([this](QWidget& form) {
    EXPECT_EQ(Child<DetailsView>(form, "tabDetails").count(), 1);
    EXPECT_EQ(Which(IsShown, form, {"dbgridList", "bitbtnDetails"}), "");
    Click(form, "btnCopy");
    EXPECT_TRUE(QApplication::clipboard()->text().startsWith("Name: Airy 1830"));
    database_.data->datasetEllipsoid.Next();
    EXPECT_TRUE(TextOf(form, "memoDetails").starts_with("Name: Bessel 1841"));
    Click(form, "bitbtnList");
    EXPECT_FALSE(IsShown(form, "memoDetails"));
    EXPECT_EQ(MarkedName(form), "Bessel 1841");
    Click(form, "bitbtnClose");
  }));
  ellipsoids_.Browse(KeyOf(kEllipsoid, "Airy 1830"), true, false);
}

// A dialog behind this one may stand on a record of any other table.
TEST_F(DetailsViewTest, LeavesTheRecordsOfOtherTablesWhereTheyWere) {
  const auto keys = [this] {
    std::vector<int> all;
    for (const auto& object : ObjectDescriptors())
      all.push_back(database_.Processor(object.type).GetCurrentKey());
    return all;
  };
  Add(TableId::kEllipsoid, "Zz of another dialog");
  Add(TableId::kDatum, "Zz of another dialog");
  Look("NAD27 / UTM 17N", [&](QWidget&, DetailsView& details) {
    const std::vector<int> before = keys();
    details.setCurrentIndex(1);
    EXPECT_EQ(keys(), before);
  });
}

}  // namespace
}  // namespace refframe_tests
