#include "editor/library_chain.h"

#include <memory>

#include "platform/text/text.h"
#include "platform/widgets/text_translation.h"

namespace QvRefSystem {
namespace {

// The user's rules of case and order, as the environment tells them when the host starts us.
struct TextLink {
  TextLink() { QvPlatform::SetUserLocale(""); }
};

// The links start in the order of the members and stop in the reverse order, so that none goes
// down ahead of those that stand on it. Storage, tables and geodesy have nothing to bring up: they
// make what they need on first use, each thread its own.
struct LibraryChain {
  QvPlatform::TextTranslation widgets;
  TextLink text;
};

int startCount = 0;
std::unique_ptr<LibraryChain> chain;

}  // namespace

bool _QvGeoRefFrameEditor_Initialize() {
  if (++startCount != 1) return false;
  chain = std::make_unique<LibraryChain>();
  return true;
}

void _QvGeoRefFrameEditor_Finalize() {
  if (startCount == 0 || --startCount != 0) return;
  chain.reset();
}

}  // namespace QvRefSystem
