#pragma once

#include <proj.h>

#include <memory>
#include <string>

/// Owners of PROJ's handles, for the sources that talk to PROJ. No other header includes this one.
namespace QvRefSystem {

/// Returns a handle to PROJ.
struct ProjDeleter {
  void operator()(PJ* object) const { proj_destroy(object); }
  void operator()(PJ_OBJ_LIST* list) const { proj_list_destroy(list); }
  void operator()(PJ_OPERATION_FACTORY_CONTEXT* factory) const {
    proj_operation_factory_context_destroy(factory);
  }
  void operator()(char** strings) const { proj_string_list_destroy(strings); }
};

/// An object of PROJ; it belongs to the thread whose context made it.
using ProjObject = std::unique_ptr<PJ, ProjDeleter>;
/// A list of objects.
using ProjList = std::unique_ptr<PJ_OBJ_LIST, ProjDeleter>;
/// What PROJ searches operations with.
using ProjFactory = std::unique_ptr<PJ_OPERATION_FACTORY_CONTEXT, ProjDeleter>;
/// A list of strings that ends in null.
using ProjStrings = std::unique_ptr<char*, ProjDeleter>;

/// The context of the calling thread: no network, and messages kept instead of printed. Objects
/// made with it stay on this thread.
[[nodiscard]] PJ_CONTEXT* ThreadProjContext();
/// What PROJ last complained of on this thread since the last call; empty if nothing.
[[nodiscard]] std::string TakeProjMessage();

/// Anything that proj_create reads, or null. `error`, if given, then gets PROJ's own reason.
[[nodiscard]] ProjObject CreateProjObject(const std::string& definition, std::string* error);
/// The coordinate reference system of that EPSG code, or null.
[[nodiscard]] ProjObject CreateEpsgSystem(int code);

}  // namespace QvRefSystem
