#include "platform/geocore/proj_handles.h"

#include <string_view>
#include <utility>

namespace QvRefSystem {
namespace {

// Declared ahead of the context, so that it outlives it.
thread_local std::string lastMessage;

void KeepMessage(void* /*user*/, int level, const char* message) {
  if (level == PJ_LOG_ERROR && message) lastMessage = message;
}

struct ContextDeleter {
  void operator()(PJ_CONTEXT* context) const { proj_context_destroy(context); }
};

PJ_CONTEXT* CreateContext() {
  PJ_CONTEXT* context = proj_context_create();
  proj_log_func(context, nullptr, KeepMessage);
  proj_log_level(context, PJ_LOG_ERROR);
  proj_context_set_enable_network(context, 0);
  return context;
}

}  // namespace

PJ_CONTEXT* ThreadProjContext() {
  // Touching the message here makes sure that it is made first and destroyed last.
  lastMessage.reserve(1);
  thread_local const std::unique_ptr<PJ_CONTEXT, ContextDeleter> context(CreateContext());
  return context.get();
}

std::string TakeProjMessage() {
  return std::exchange(lastMessage, {});
}

ProjObject CreateProjObject(const std::string& definition, std::string* error) {
  PJ_CONTEXT* context = ThreadProjContext();
  lastMessage.clear();
  ProjObject object(proj_create(context, definition.c_str()));
  if (!object && error) {
    *error = TakeProjMessage();
    constexpr std::string_view kSpeaker = "proj_create: ";
    if (error->starts_with(kSpeaker)) error->erase(0, kSpeaker.size());
    if (error->empty()) *error = "not a coordinate reference system that PROJ can read";
  }
  return object;
}

ProjObject CreateEpsgSystem(int code) {
  return ProjObject(proj_create_from_database(
      ThreadProjContext(), "EPSG", std::to_string(code).c_str(), PJ_CATEGORY_CRS, 0, nullptr));
}

}  // namespace QvRefSystem
