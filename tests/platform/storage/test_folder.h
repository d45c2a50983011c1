#pragma once

#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <stdexcept>
#include <string>

#include "platform/storage/stream.h"

namespace platform_tests {

/// A folder that goes with its test.
class TestFolder {
 public:
  TestFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "refframe-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no folder for a test");
    path_ = name;
  }
  ~TestFolder() {
    std::error_code error;
    std::filesystem::remove_all(path_, error);
  }
  TestFolder(const TestFolder&) = delete;
  TestFolder& operator=(const TestFolder&) = delete;

  [[nodiscard]] std::string Path(const std::string& name = {}) const {
    return name.empty() ? path_.string() : (path_ / name).string();
  }
  [[nodiscard]] std::size_t FileCount() const {
    return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(path_),
                                                  std::filesystem::directory_iterator()));
  }

 private:
  std::filesystem::path path_;
};

inline std::string ReadFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

inline void WriteFile(const std::string& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
}

/// Writes a whole stream; the reason if it cannot be opened.
template <typename Stream>
void Save(const std::string& name, const std::string& bytes) {
  Stream stream;
  if (!stream.Open(name, QvPlatform::QvOpenMode::kCreate)) {
    throw std::runtime_error(stream.LastError());
  }
  stream.Write(bytes.data(), bytes.size());
  stream.Commit();
}

template <typename Stream>
std::string Load(const std::string& name) {
  Stream stream;
  if (!stream.Open(name, QvPlatform::QvOpenMode::kRead)) {
    throw std::runtime_error(stream.LastError());
  }
  return stream.ReadAll();
}

/// Runs the steps in a process of their own, which ends at once behind them as after a kill, with
/// what they give as its exit status.
inline pid_t StartChild(const std::function<int()>& steps) {
  const pid_t child = fork();
  if (child != 0) return child;
  try {
    _exit(steps());
  } catch (...) {
    _exit(99);
  }
}

/// Exit status of a child that was started; -1 if it came to no end of its own.
inline int ExitOf(pid_t child) {
  int status = 0;
  return waitpid(child, &status, 0) == child && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

inline int ExitOfChild(const std::function<int()>& steps) {
  return ExitOf(StartChild(steps));
}

}  // namespace platform_tests
