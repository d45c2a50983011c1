#include "apps/cli/output_file.h"

#include <filesystem>

#include "apps/cli/command_error.h"
#include "registry/object_files.h"

namespace RefframeCli {

bool MayWriteOutput(const Request& request, Terminal terminal, TerminalInterface& ui) {
  using namespace QvPlatform;
  if (request.output.empty()) return true;
  QvRefSystem::RequireOutsideDatabases(request.output);
  std::error_code error;
  if (!std::filesystem::exists(request.output, error)) return true;
  const std::string there = "\"" + request.output + "\" is there already";
  if (request.noClobber) throw CommandError(there);
  if (!terminal.interactive) return true;
  return ui.ShowMessage(MessageKind::kConfirmation, there + ". Replace it?",
                        MessageButtons::kYesNo) == MessageAnswer::kYes;
}

}  // namespace RefframeCli
