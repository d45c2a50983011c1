#pragma once

#include <memory>
#include <string>

#include "platform/storage/stream.h"

namespace QvPlatform {

/// A plain file. What is created is written aside, flushed, and takes its place on Commit.
class TQvFileStream final : public TQvStream {
 public:
  /// The stream is closed.
  TQvFileStream();
  ~TQvFileStream() override;
  [[nodiscard]] bool Open(const std::string& path, QvOpenMode mode) override;
  std::size_t Read(void* buffer, std::size_t size) override;
  void Write(const void* data, std::size_t size) override;
  [[nodiscard]] std::uint64_t Size() const override;
  void Commit() override;
  void Close() noexcept override;

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace QvPlatform
