// Heights of a table interpolated exactly onto a UTM grid of ten million nodes, beside gdalwarp
// with the same table, grid and exactness (-et 0) in the same run.
//
// gdalwarp is a process of its own that writes to memory (/dev/shm), or else to the temporary
// folder; cpu_ms counts what each side took of the processor, which a busy machine does not
// distort.
#include <benchmark/benchmark.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>
#include <vector>

#include "platform/geocore/definition_from_model.h"

namespace {

namespace fs = std::filesystem;
using QvRefSystem::SystemModel;
using QvRefSystem::THeightTable;
using QvRefSystem::TShellReferenceSystem;

constexpr double kPi = 3.14159265358979323846;
// The table: a degree around the grid, cells of a minute.
constexpr int kColumns = 481;
constexpr int kRows = 361;
constexpr double kCell = 1.0 / 60;
constexpr double kWest = 6;
constexpr double kSouth = 46;
// The grid: 3,200 by 3,125 nodes of 100 m.
constexpr int kCountX = 3200;
constexpr int kCountY = 3125;
constexpr double kStep = 100;
constexpr double kOriginX = 350000;
constexpr double kOriginY = 5150000;

SystemModel Wgs84() {
  SystemModel system;
  system.name = "WGS 84";
  system.angularUnit.factorB = kPi;
  system.angularUnit.factorC = 180;
  system.primeMeridian.longitude = "0";
  system.primeMeridian.unit = system.angularUnit;
  system.ellipsoid.emplace();
  system.ellipsoid->a = "6378137";
  system.ellipsoid->useF = true;
  system.ellipsoid->f = 1 / 298.257223563;
  return system;
}

SystemModel Utm32(SystemModel system) {
  system.kind = QvRefSystem::SystemKind::kProjected;
  system.name = "UTM 32";
  auto& projection = system.projection.emplace();
  projection.method = 9807;
  projection.parameters = {{8801, "", "0"},
                           {8802, "", "9"},
                           {8805, "", "0.9996"},
                           {8806, "", "500000"},
                           {8807, "", "0"}};
  projection.linearUnit = projection.scaleUnit = QvRefSystem::UnitModel{};
  projection.angularUnit = system.angularUnit;
  return system;
}

// The frame of DHDN: a shift in translation alone.
SystemModel Shifted(SystemModel system) {
  system.datum.emplace();
  system.datum->ellipsoid = *system.ellipsoid;
  system.ellipsoid.reset();
  auto& shift = system.datum->shift;
  shift.tx = "598.1";
  shift.ty = "73.7";
  shift.tz = "418.2";
  return system;
}

TShellReferenceSystem Shell(SystemModel model) {
  return TShellReferenceSystem(QvRefSystem::DefinitionFromModel(std::move(model)));
}

double HeightAt(int i, int j) {
  return 48 + 3 * std::sin(i * 0.02) + 2 * std::cos(j * 0.03);
}

void FillSource(THeightTable* table) {
  table->Resize(kColumns, kRows, kCell, kCell, kWest, kSouth);
  for (int i = 0; i < kColumns; ++i) {
    for (int j = 0; j < kRows; ++j)
      table->Set(i, j, HeightAt(i, j));
  }
}

int PassOn() {
  return 0;
}

rusage UsageOfSelf() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return usage;
}

double CpuMilliseconds(const rusage& usage) {
  const auto milliseconds = [](const timeval& time) {
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_usec) / 1e3;
  };
  return milliseconds(usage.ru_utime) + milliseconds(usage.ru_stime);
}

void Interpolate(benchmark::State& state, const SystemModel& plane) {
  const TShellReferenceSystem source = Shell(Wgs84());
  const TShellReferenceSystem target = Shell(plane);
  THeightTable table;
  FillSource(&table);
  THeightTable result;
  const double before = CpuMilliseconds(UsageOfSelf());
  for (auto _ : state) {
    result.Resize(kCountX, kCountY, kStep, kStep, kOriginX, kOriginY);
    source.InterpolateHeights(&table, &target, &result, PassOn);
    benchmark::DoNotOptimize(result.Get(5, 5));
  }
  const rusage usage = UsageOfSelf();
  state.counters["cpu_ms"] =
      (CpuMilliseconds(usage) - before) / static_cast<double>(state.iterations());
  state.counters["peak_MB"] = static_cast<double>(usage.ru_maxrss) / 1024;
  state.SetItemsProcessed(state.iterations() * int64_t{kCountX} * kCountY);
}

void BM_InterpolateOntoUtm(benchmark::State& state) {
  Interpolate(state, Utm32(Wgs84()));
}
BENCHMARK(BM_InterpolateOntoUtm)->Unit(benchmark::kMillisecond)->Iterations(3)->UseRealTime();

void BM_InterpolateOntoUtmOfAnotherDatum(benchmark::State& state) {
  Interpolate(state, Utm32(Shifted(Wgs84())));
}
BENCHMARK(BM_InterpolateOntoUtmOfAnotherDatum)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1)
    ->UseRealTime();

std::string Folder() {
  return fs::exists("/dev/shm") ? "/dev/shm/refframe_grid_bench"
                                : (fs::temp_directory_path() / "refframe_grid_bench").string();
}

// The table as a raw raster of doubles with a header that GDAL reads, pixels around the nodes.
void WriteRaster(const std::string& folder) {
  fs::create_directories(folder);
  std::ofstream values(folder + "/heights.bin", std::ios::binary);
  for (int j = kRows - 1; j >= 0; --j) {
    for (int i = 0; i < kColumns; ++i) {
      const double height = HeightAt(i, j);
      values.write(reinterpret_cast<const char*>(&height), sizeof height);
    }
  }
  std::ofstream(folder + "/heights.vrt")
      << "<VRTDataset rasterXSize=\"" << kColumns << "\" rasterYSize=\"" << kRows
      << "\"><SRS>EPSG:4326</SRS><GeoTransform>" << kWest - kCell / 2 << "," << kCell << ",0,"
      << kSouth + (kRows - 0.5) * kCell << ",0," << -kCell
      << "</GeoTransform><VRTRasterBand dataType=\"Float64\" band=\"1\" "
         "subClass=\"VRTRawRasterBand\"><SourceFilename relativetoVRT=\"1\">heights.bin"
         "</SourceFilename><ByteOrder>LSB</ByteOrder></VRTRasterBand></VRTDataset>";
}

void BM_Gdalwarp(benchmark::State& state) {
  const std::string folder = Folder();
  WriteRaster(folder);
  const auto text = [](double value) { return std::to_string(value); };
  const std::vector<std::string> words{"gdalwarp",
                                       "-q",
                                       "-overwrite",
                                       "-r",
                                       "bilinear",
                                       "-et",
                                       "0",
                                       "-t_srs",
                                       "EPSG:32632",
                                       "-te",
                                       text(kOriginX - kStep / 2),
                                       text(kOriginY - kStep / 2),
                                       text(kOriginX + (kCountX - 0.5) * kStep),
                                       text(kOriginY + (kCountY - 0.5) * kStep),
                                       "-ts",
                                       std::to_string(kCountX),
                                       std::to_string(kCountY),
                                       folder + "/heights.vrt",
                                       folder + "/warped.tif"};
  std::vector<char*> arguments;
  for (const std::string& word : words)
    arguments.push_back(const_cast<char*>(word.c_str()));
  arguments.push_back(nullptr);
  double peak = 0;
  double cpu = 0;
  for (auto _ : state) {
    const pid_t child = fork();
    if (child == 0) {
      execvp(arguments[0], arguments.data());
      _exit(127);
    }
    int status = 0;
    rusage usage{};
    wait4(child, &status, 0, &usage);
    if (status != 0) {
      state.SkipWithError("gdalwarp is not there or failed");
      break;
    }
    peak = static_cast<double>(usage.ru_maxrss) / 1024;
    cpu += CpuMilliseconds(usage);
  }
  state.counters["cpu_ms"] = cpu / static_cast<double>(state.iterations());
  state.counters["peak_MB"] = peak;
  state.SetItemsProcessed(state.iterations() * int64_t{kCountX} * kCountY);
  fs::remove_all(folder);
}
BENCHMARK(BM_Gdalwarp)->Unit(benchmark::kMillisecond)->Iterations(3)->UseRealTime();

}  // namespace
