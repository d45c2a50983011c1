// Reading and writing the text of a fine height table of the whole earth, 8640 by 4321 nodes with
// three decimals. The peers are gdal_translate, run as a process that writes or reads an Arc/Info
// ASCII grid of the same heights from or to a raw grid, and a bare loop over std::from_chars. The
// counters: bytes_per_second of text by processor time (by the clock for gdal_translate, whose
// processor time is cpu_ms), and peak_mb, the most memory that a process has ever held: this one,
// or for gdal_translate any process that this one has run.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <charconv>
#include <chrono>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "platform/data/height_table_reader.h"
#include "platform/data/height_table_writer.h"

extern char** environ;

namespace {

namespace fs = std::filesystem;
using QvRefSystem::FormatHeightTable;
using QvRefSystem::kHeightHeaderFormat;
using QvRefSystem::kHeightValueFormat;
using QvRefSystem::ParseHeightTable;
using Table = QvCommonUtils::T2DTable<double>;

constexpr unsigned kColumns = 8640;
constexpr unsigned kRows = 4321;
constexpr double kCell = 360.0 / kColumns;

/// Undulations about as high and as smooth as those of the earth, in whole millimetres.
const Table& Heights() {
  static const Table* const table = [] {
    auto* made = new Table;
    made->Resize(kColumns, kRows, kCell, kCell, -180, -90);
    std::minstd_rand random(1);
    for (unsigned i = 0; i < kColumns; ++i) {
      for (unsigned j = 0; j < kRows; ++j) {
        const double height = 50e3 * std::sin(i * 0.004) * std::cos(j * 0.003) -
                              30e3 * std::sin(j * 0.0021 + i * 0.001) +
                              static_cast<int>(random() % 512);
        made->Set(i, j, std::round(height) / 1000);
      }
    }
    return made;
  }();
  return *table;
}

const std::string& Text() {
  static const std::string* const text = [] {
    auto* made = new std::string;
    if (!FormatHeightTable(&Heights(), made, kHeightHeaderFormat, kHeightValueFormat, nullptr)) {
      std::abort();
    }
    return made;
  }();
  return *text;
}

double PeakMegabytes(int who) {
  rusage usage{};
  getrusage(who, &usage);
  return static_cast<double>(usage.ru_maxrss) / 1024;
}

void Report(benchmark::State& state, std::size_t bytes, int who = RUSAGE_SELF) {
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes));
  state.counters["text_mb"] = static_cast<double>(bytes) / 1e6;
  state.counters["peak_mb"] = PeakMegabytes(who);
}

void HeightRead(benchmark::State& state) {
  const std::string& text = Text();
  for (auto _ : state) {
    Table table;
    if (!ParseHeightTable(&table, text, nullptr)) state.SkipWithError("the text was refused");
    benchmark::DoNotOptimize(table.Crc);
  }
  Report(state, text.size());
}
BENCHMARK(HeightRead)->Unit(benchmark::kMillisecond)->MinTime(2);

/// The same numbers into an array in the order of the text, and nothing more.
void FromCharsRead(benchmark::State& state) {
  const std::string& text = Text();
  for (auto _ : state) {
    std::vector<double> values;
    values.reserve(std::size_t{kColumns} * kRows + 6);
    const char* end = text.data() + text.size();
    for (const char* next = text.data();;) {
      while (next != end && static_cast<unsigned char>(*next) <= ' ')
        ++next;
      if (next == end) break;
      double value = 0;
      next = std::from_chars(next, end, value).ptr;
      values.push_back(value);
    }
    benchmark::DoNotOptimize(values.data());
  }
  Report(state, text.size());
}
BENCHMARK(FromCharsRead)->Unit(benchmark::kMillisecond)->MinTime(2);

void HeightWrite(benchmark::State& state) {
  const Table& table = Heights();
  for (auto _ : state) {
    std::string text;
    if (!FormatHeightTable(&table, &text, kHeightHeaderFormat, kHeightValueFormat, nullptr)) {
      state.SkipWithError("the table was refused");
    }
    benchmark::DoNotOptimize(text.data());
  }
  Report(state, Text().size());
}
BENCHMARK(HeightWrite)->Unit(benchmark::kMillisecond)->MinTime(2);

void HeightInterpolate(benchmark::State& state) {
  const Table& table = Heights();
  std::mt19937 random(3);
  std::uniform_real_distribution<double> x(-181, 181);
  std::uniform_real_distribution<double> y(-91, 91);
  constexpr std::size_t kPlaces = 1 << 16;
  std::vector<std::pair<double, double>> places(kPlaces);
  for (auto& place : places)
    place = {x(random), y(random)};
  for (auto _ : state) {
    double sum = 0;
    for (const auto& place : places)
      sum += table.Interpolate(place.first, place.second);
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(kPlaces));
}
BENCHMARK(HeightInterpolate);

/// A folder with the heights as an ASCII grid and as a raw one of doubles.
class PeerFiles {
 public:
  PeerFiles() : folder_(fs::temp_directory_path() / ("height_bench." + std::to_string(getpid()))) {
    fs::create_directories(folder_);
    std::ofstream ascii(Path("text.asc"), std::ios::binary);
    ascii << "ncols " << kColumns << "\nnrows " << kRows << "\nxllcorner -180\nyllcorner -90\n"
          << "cellsize " << std::to_string(kCell) << "\n";
    const std::size_t head = Text().find('\n') + 1;
    ascii.write(Text().data() + head, static_cast<std::streamsize>(Text().size() - head));
    std::ofstream raw(Path("raw.bin"), std::ios::binary);
    std::vector<double> row(kColumns);
    for (unsigned j = kRows; j-- > 0;) {
      Heights().GetRows(j, row);
      raw.write(reinterpret_cast<const char*>(row.data()), kColumns * sizeof(double));
    }
    std::ofstream(Path("raw.hdr")) << "ENVI\nsamples = " << kColumns << "\nlines = " << kRows
                                   << "\nbands = 1\nheader offset = 0\ndata type = 5\n"
                                      "interleave = bsq\nbyte order = 0\n";
  }
  ~PeerFiles() {
    std::error_code error;
    fs::remove_all(folder_, error);
  }
  PeerFiles(const PeerFiles&) = delete;
  PeerFiles& operator=(const PeerFiles&) = delete;

  [[nodiscard]] std::string Path(const char* name) const { return (folder_ / name).string(); }

 private:
  fs::path folder_;
};

/// False if the program is missing or fails.
bool RunProgram(std::vector<std::string> words) {
  std::vector<char*> arguments;
  for (std::string& word : words)
    arguments.push_back(word.data());
  arguments.push_back(nullptr);
  posix_spawn_file_actions_t quiet;
  posix_spawn_file_actions_init(&quiet);
  posix_spawn_file_actions_addopen(&quiet, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
  posix_spawn_file_actions_addopen(&quiet, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
  pid_t child = 0;
  const int failed = posix_spawnp(&child, arguments[0], &quiet, nullptr, arguments.data(), environ);
  posix_spawn_file_actions_destroy(&quiet);
  int status = 0;
  return failed == 0 && waitpid(child, &status, 0) == child && WIFEXITED(status) &&
         WEXITSTATUS(status) == 0;
}

/// Time that processors have given to the programs run so far.
double ProcessorSeconds() {
  rusage usage{};
  getrusage(RUSAGE_CHILDREN, &usage);
  const auto seconds = [](const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
  };
  return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

void RunPeer(benchmark::State& state, const std::vector<std::string>& options, const char* from,
             const char* to) {
  if (!RunProgram({"gdal_translate", "--version"})) {
    state.SkipWithError("gdal_translate is not there (package gdal-bin)");
    return;
  }
  const PeerFiles files;
  std::vector<std::string> words = {"gdal_translate", "-q"};
  words.insert(words.end(), options.begin(), options.end());
  words.push_back(files.Path(from));
  words.push_back(files.Path(to));
  const double before = ProcessorSeconds();
  for (auto _ : state) {
    const auto start = std::chrono::steady_clock::now();
    if (!RunProgram(words)) state.SkipWithError("gdal_translate failed");
    state.SetIterationTime(
        std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
  }
  Report(state, Text().size(), RUSAGE_CHILDREN);
  state.counters["cpu_ms"] =
      (ProcessorSeconds() - before) * 1e3 / static_cast<double>(state.iterations());
}

void PeerRead(benchmark::State& state) {
  RunPeer(state, {"-of", "ENVI", "-ot", "Float64"}, "text.asc", "read.bin");
}
BENCHMARK(PeerRead)->UseManualTime()->Iterations(1)->Unit(benchmark::kMillisecond);

void PeerWrite(benchmark::State& state) {
  RunPeer(state, {"-of", "AAIGrid", "-co", "DECIMAL_PRECISION=3", "-co", "FORCE_CELLSIZE=YES"},
          "raw.bin", "written.asc");
}
BENCHMARK(PeerWrite)->UseManualTime()->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace
