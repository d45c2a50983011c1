// What a user waits for in the dialogs, on the delivered database: REFFRAME_DELIVERED names it, a
// container's file or a folder. No step may take longer than a frame of the screen, 16 ms.
//
// Each step ends when all that it brought about has been handled and drawn; the offscreen platform
// draws into memory, so that what is measured is our own time and the toolkit's. Times vary with
// the load of the machine: compare with the peer beside it.

#include <benchmark/benchmark.h>
#include <unistd.h>

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QTabWidget>
#include <QTest>
#include <QTimer>
#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <iostream>
#include <memory>

#include "assembly/processor_set.h"
#include "dialogs/edit/edit_forms.h"
#include "dialogs/select/database_manager.h"
#include "dialogs/select/selectors.h"
#include "dialogs/select/used_by_list.h"

namespace {

using QvRefSystem::GetSelectorFor;
using QvRefSystem::TformQvRfSelector;
using QvRefSystem::TObjectType;

constexpr double kFrame = 16;

QWidget& Child(QWidget& form, const char* name) {
  auto* child = form.findChild<QWidget*>(QString::fromLatin1(name));
  if (child == nullptr) throw std::runtime_error(std::string("no control ") + name);
  return *child;
}

void Click(QWidget& form, const char* name) {
  static_cast<QAbstractButton&>(Child(form, name)).click();
}

// Handles what is waiting, and draws the form.
void Settle(QWidget& form) {
  QApplication::sendPostedEvents();
  QApplication::processEvents();
  benchmark::DoNotOptimize(form.grab());
}

/// The application and a copy of the delivered database, for all benchmarks. It goes before the
/// toolkit's own statics do.
class TBench {
 public:
  static TBench& The() { return *the_; }
  [[nodiscard]] TformQvRfSelector* New(TObjectType type, QWidget* owner = nullptr) const {
    return GetSelectorFor(owner, static_cast<int>(type));
  }

  TBench() {
    the_ = this;
    const char* delivered = std::getenv("REFFRAME_DELIVERED");
    if (delivered == nullptr) throw std::runtime_error("REFFRAME_DELIVERED names no database");
    const bool container = std::filesystem::is_regular_file(delivered);
    copy_ =
        std::filesystem::temp_directory_path() / ("interaction_bench" + std::to_string(getpid()));
    if (container) copy_ += ".qvdb";
    std::filesystem::copy(delivered, copy_, std::filesystem::copy_options::recursive);
    data_ = QvRefSystem::MakeDataModule(*ui_);
    data_->DatabasePath = copy_.string();
    QvRefSystem::datamoduleQvRfData = data_.get();
    if (!data_->OpenDatabase(copy_.string(), QvRefSystem::kFullMode, container)) {
      throw std::runtime_error(data_->LastError());
    }
  }
  ~TBench() {
    data_->CloseDatabase();
    std::filesystem::remove_all(copy_);
  }
  TBench(const TBench&) = delete;
  TBench& operator=(const TBench&) = delete;

 private:
  static inline TBench* the_ = nullptr;

  int argc_ = 1;
  char name_[18] = "interaction_bench";
  char* argv_[2] = {name_, nullptr};
  QApplication application_{argc_, argv_};
  std::unique_ptr<QvPlatform::TUserInterface> ui_ = QvRefSystem::MakeDialogInterface();
  std::unique_ptr<QvRefSystem::TdatamoduleQvRfData> data_;
  std::filesystem::path copy_;
};

/// Time of the steps of one benchmark, and whether the slowest one kept to a frame.
class TSteps {
 public:
  explicit TSteps(benchmark::State& state) : state_(state) {}
  ~TSteps() {
    state_.counters["worst_ms"] = worst_;
    state_.counters["frames_missed"] = missed_;
  }
  template <typename Step>
  void Time(Step&& step) {
    Begin();
    step();
    End();
  }
  /// For steps that begin inside a modal run and end behind it.
  void Begin() { start_ = Now(); }
  void End() {
    const double took = Now() - start_;
    state_.SetIterationTime(took);
    worst_ = std::max(worst_, took * 1000);
    if (took * 1000 > kFrame) ++missed_;
  }

 private:
  // Processor time in seconds, which other programs do not stretch. Nothing here sleeps.
  static double Now() {
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
  }

  benchmark::State& state_;
  double start_ = 0;
  double worst_ = 0;
  double missed_ = 0;
};

/// Does something inside the modal run of a selector.
template <typename Act>
void Inside(TformQvRfSelector& selector, Act act) {
  QTimer::singleShot(0, &selector, [&] {
    act();
    Click(selector, "bitbtnCancel");
  });
  selector.Select(nullptr, 0, false, nullptr, 0);
}

// The peer of all that follows: an empty dialog of the same size is shown and drawn.
void EmptyDialog(benchmark::State& state) {
  (void)TBench::The();
  TSteps steps(state);
  for (auto _ : state) {
    QDialog dialog;
    dialog.resize(640, 360);
    steps.Time([&] {
      dialog.show();
      Settle(dialog);
    });
  }
}
BENCHMARK(EmptyDialog)->UseManualTime()->Unit(benchmark::kMillisecond);

void MakeSelector(benchmark::State& state) {
  const auto type = static_cast<TObjectType>(state.range(0));
  const TBench& bench = TBench::The();
  TSteps steps(state);
  for (auto _ : state) {
    std::unique_ptr<TformQvRfSelector> selector;
    steps.Time([&] { selector.reset(bench.New(type)); });
  }
}
BENCHMARK(MakeSelector)
    ->ArgName("type")
    ->Arg(static_cast<int>(TObjectType::kReferenceSystem))
    ->Arg(static_cast<int>(TObjectType::kEllipsoid))
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

// From the call of Select to the drawn list.
void OpenSelector(benchmark::State& state) {
  const std::unique_ptr<TformQvRfSelector> selector(
      TBench::The().New(static_cast<TObjectType>(state.range(0))));
  TSteps steps(state);
  for (auto _ : state) {
    steps.Time([&] { Inside(*selector, [&] { Settle(*selector); }); });
  }
}
BENCHMARK(OpenSelector)
    ->ArgName("type")
    ->Arg(static_cast<int>(TObjectType::kReferenceSystem))
    ->Arg(static_cast<int>(TObjectType::kEllipsoid))
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

// Each letter of a word, from the key to the drawn list.
void TypeALetter(benchmark::State& state) {
  const std::unique_ptr<TformQvRfSelector> selector(
      TBench::The().New(TObjectType::kReferenceSystem));
  TSteps steps(state);
  const std::string word = "utm zone 33n";
  std::size_t at = 0;
  Inside(*selector, [&] {
    auto* search = static_cast<QComboBox&>(Child(*selector, "comboSearch")).lineEdit();
    for (auto _ : state) {
      if (at == word.size()) {
        search->clear();
        Settle(*selector);
        at = 0;
      }
      steps.Time([&] {
        QTest::keyClick(search, word[at++]);
        Settle(*selector);
      });
    }
  });
}
BENCHMARK(TypeALetter)->UseManualTime()->Unit(benchmark::kMillisecond);

// From the click on Details to the drawn description and map, or the drawn WKT, of one system after
// the other through the whole list.
void ShowDetails(benchmark::State& state) {
  const std::unique_ptr<TformQvRfSelector> selector(
      TBench::The().New(TObjectType::kReferenceSystem));
  auto& pages = static_cast<QTabWidget&>(Child(*selector, "tabDetails"));
  QvPlatform::TQvDataSet& systems = *selector->Processor->DataSet;
  TSteps steps(state);
  int place = 0;
  Inside(*selector, [&] {
    Click(*selector, "bitbtnDetails");
    pages.setCurrentIndex(static_cast<int>(state.range(0)));
    Settle(*selector);
    for (auto _ : state) {
      Click(*selector, "bitbtnList");
      place = (place + 37) % systems.RecordCount();
      systems.MoveTo(place);
      Settle(*selector);
      steps.Time([&] {
        Click(*selector, "bitbtnDetails");
        Settle(*selector);
      });
    }
  });
}
BENCHMARK(ShowDetails)
    ->ArgName("page")
    ->Arg(0)
    ->Arg(1)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

// From the call to the drawn list of a selector that another dialog owns, which hides meanwhile.
void OpenNestedSelector(benchmark::State& state) {
  const TBench& bench = TBench::The();
  const std::unique_ptr<TformQvRfSelector> outer(bench.New(TObjectType::kReferenceSystem));
  TSteps steps(state);
  Inside(*outer, [&] {
    TformQvRfSelector* inner = bench.New(TObjectType::kDatum, outer.get());
    for (auto _ : state) {
      steps.Time([&] {
        QTimer::singleShot(0, inner, [&] {
          Settle(*inner);
          Click(*inner, "bitbtnCancel");
        });
        inner->Select(nullptr, 0, true, nullptr, 0);
      });
    }
  });
}
BENCHMARK(OpenNestedSelector)->UseManualTime()->Unit(benchmark::kMillisecond);

// The edit dialog of a record, over its selector.
class TEditRun {
 public:
  explicit TEditRun(TObjectType type)
      : selector_(TBench::The().New(type)),
        form_(*QvRefSystem::GetEditForm(selector_.get(), QvRefSystem::DialogChooser(), type,
                                        TypeOfFirst())) {}

  // Edits the record; `act` runs inside, with the dialog drawn.
  template <typename Act>
  void Run(Act act) {
    QTimer::singleShot(0, &form_, [&] {
      Settle(form_);
      act(form_);
    });
    (void)form_.EditCurrent();
  }

 private:
  int TypeOfFirst() {
    QvPlatform::TQvDataSet& records = *selector_->Processor->DataSet;
    records.First();
    return selector_->Processor->ObjectType == static_cast<int>(TObjectType::kDatumShift)
               ? records.FieldByName("TYPE").AsInteger()
               : 0;
  }

  std::unique_ptr<TformQvRfSelector> selector_;
  QvRefSystem::TformQvRfEdit& form_;
};

void EditedTypes(benchmark::internal::Benchmark* bench) {
  bench->ArgName("type")->UseManualTime()->Unit(benchmark::kMillisecond);
  for (const TObjectType type : {TObjectType::kEllipsoid, TObjectType::kDatum,
                                 TObjectType::kDatumShift, TObjectType::kMapProjection}) {
    bench->Arg(static_cast<int>(type));
  }
}

// From the call to the drawn dialog with the record in it, closed again.
void OpenEditDialog(benchmark::State& state) {
  TEditRun edit(static_cast<TObjectType>(state.range(0)));
  TSteps steps(state);
  for (auto _ : state) {
    steps.Time([&] { edit.Run([](QWidget& form) { Click(form, "bitbtnClose"); }); });
  }
}
BENCHMARK(OpenEditDialog)->Apply(EditedTypes);

// From the click on Save until the selector has control back. The wait for the disk takes no time
// of the processor's.
void SaveEditDialog(benchmark::State& state) {
  TEditRun edit(static_cast<TObjectType>(state.range(0)));
  TSteps steps(state);
  for (auto _ : state) {
    edit.Run([&steps](QWidget& form) {
      steps.Begin();
      Click(form, "bitbtnSave");
    });
    steps.End();
  }
}
BENCHMARK(SaveEditDialog)->Apply(EditedTypes);

// From the making of the database manager to its drawn list.
void OpenDatabaseManager(benchmark::State& state) {
  (void)TBench::The();
  QvRefSystem::TQvGeoRefFrameDialogOptions options;
  TSteps steps(state);
  for (auto _ : state) {
    std::unique_ptr<QvRefSystem::TformGeoRefFrameDatabaseManager> manager;
    steps.Time([&] {
      manager = std::make_unique<QvRefSystem::TformGeoRefFrameDatabaseManager>(nullptr);
      manager->Fill(&options);
      manager->show();
      Settle(*manager);
    });
  }
}
BENCHMARK(OpenDatabaseManager)->UseManualTime()->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  try {
    const TBench bench;
    benchmark::RunSpecifiedBenchmarks();
  } catch (const std::exception& error) {
    std::cerr << "interaction_bench: " << error.what() << '\n';
    return 1;
  }
  benchmark::Shutdown();
  return 0;
}
